#include "Service/Files/ChildProcess.h"

#include <csignal>
#include <linux/close_range.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace veranox {

void prepareChild(pid_t parent)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const bool isOrphan = ::getppid() != parent; // died before the line above
    if (isOrphan)
        ::_exit(1);
    constexpr unsigned firstOfOurs = STDERR_FILENO + 1;
    ::syscall(SYS_close_range, firstOfOurs, ~0U, CLOSE_RANGE_CLOEXEC);
}

} // namespace veranox
