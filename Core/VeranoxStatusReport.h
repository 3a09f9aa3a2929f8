#pragma once
#include <QStringList>

class VeranoxStore;

// What the application knows, for a terminal: the state of the service, then a line for each profile, tunnel and
// publication. No line holds a line end. Main thread.
QStringList describeStatus(const VeranoxStore &store);
