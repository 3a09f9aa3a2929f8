#pragma once
#include "Base/Jobs/Async.h"
#include <QString>
#include <exception>

// What a caught failure says to the user: the localised description of an error of this application, else the text of
// the standard exception. Any thread.
QString describeFailure(const std::exception_ptr &failure);

// Whether a caught failure is a cancellation, which is never reported. Any thread.
bool isCancellation(const std::exception_ptr &failure);

// The failure of some work as a value; null when it succeeded.
jobs::Async<std::exception_ptr> failureOf(jobs::Async<> work);
