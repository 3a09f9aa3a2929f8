#pragma once
#include <QString>
#include <exception>

// What a caught failure says to the user: the localised description of an error of this application, else the text of
// the standard exception. Any thread.
QString describeFailure(const std::exception_ptr &failure);

// Whether a caught failure is a cancellation, which is never reported. Any thread.
bool isCancellation(const std::exception_ptr &failure);
