#include "Base/Process/SpawnSupport.h"
#include <fcntl.h>
#include <sys/syscall.h>

std::optional<Pipe> openPipe()
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    Pipe pipe{.readEnd = Descriptor(ends[0]), .writeEnd = Descriptor(ends[1])};
    if (::fcntl(pipe.readEnd.number(), F_SETFL, O_NONBLOCK) != 0) // the child's end stays an ordinary one
        return std::nullopt;
    return pipe;
}

short closeEverythingElse(posix_spawn_file_actions_t &actions)
{
    ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    return 0;
}

Descriptor openExitDescriptor(pid_t child)
{
    // Linux 5.3 or newer. Not by the C library's function: glibc 2.36 does not declare it for C++.
    return Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
}
