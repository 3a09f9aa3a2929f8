#pragma once
#include "API/Records/VeranoxProfile.h"
#include <QList>

// The order in which people see their profiles, everywhere: work profiles first (the name or the title has "work" in
// it, capitals or not), then by title as the locale sorts, capitals or not. Equal ones keep their order. Any thread.
QList<VeranoxProfile> inSharedProfileOrder(const QList<VeranoxProfile> &profiles);
