#pragma once

// What the desktop lets windows do. Main thread only, needs the QGuiApplication.
namespace platform {

// Whether a window may say where it stands. Otherwise the desktop places it, and it needs a title to be moved by.
bool canPlaceWindows();

// Whether the desktop blends what is transparent in a window with what lies behind it, now.
bool blendsWindows();

} // namespace platform
