#pragma once

namespace platform {

// Makes the application known to screen readers and other assistive programs, also to those that are started after it.
// Call once, before the QGuiApplication is made and while there is one thread: it may change the environment.
void offerToScreenReaders();

} // namespace platform
