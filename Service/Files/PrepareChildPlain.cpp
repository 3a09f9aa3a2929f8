#include "Service/Files/ChildProcess.h"

#include <fcntl.h>

namespace veranox {

/// Here nothing tells a child of its parent's sudden end.
void prepareChild(pid_t)
{
    constexpr int mostFiles = 4096;
    for (int file = STDERR_FILENO + 1; file < mostFiles; ++file)
        ::fcntl(file, F_SETFD, FD_CLOEXEC);
}

} // namespace veranox
