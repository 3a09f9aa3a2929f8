#pragma once
#include <chrono>

// Ends the process with success once this time has passed, whatever the calling thread does by then: its event loop may
// have ended, and a destructor may be waiting for a disk. Returns at once. There is no way back.
void endProcessAfter(std::chrono::milliseconds time);
