#pragma once
#include "Base/Process/ChildProcess.h"

// Starts the program with its output on `output` and gives its identifier. Throws LaunchError.
pid_t spawn(const ChildProcess::Program &program, const Descriptor &output);
