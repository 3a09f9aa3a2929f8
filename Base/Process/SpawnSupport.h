// What starting and watching a child takes that every system does in its own way. Any thread.
#pragma once
#include "Base/Process/Descriptor.h"
#include <optional>
#include <spawn.h>

struct Pipe {
    Descriptor readEnd; // never blocks
    Descriptor writeEnd;
};

// A pipe that no child inherits by accident; absent when the system refuses one, and errno says why.
std::optional<Pipe> openPipe();

// Leaves the child nothing but its standard input, output and error. Gives the flags to add to `attributes`.
short closeEverythingElse(posix_spawn_file_actions_t &actions);

// A descriptor that becomes readable when the child has ended; none when the system refuses it, and errno says why.
Descriptor openExitDescriptor(pid_t child);
