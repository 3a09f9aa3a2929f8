#pragma once
#include "Base/Jobs/Async.h"
#include <QString>
#include <functional>

// What can be done to a tunnel or publication in place. Each gives a sentence when it failed, else nothing. Where they
// are absent, rows offer none of it.
struct VeranoxRowOperations {
    std::function<jobs::Async<QString>(QString name, bool enabled)> setEnabled;
    std::function<jobs::Async<QString>(QString name)> restart;
};
