#pragma once
#include <sys/resource.h>

namespace veranox {

/// Lets this process hold as many open files as the system allows it at all: each forwarded connection takes two or
/// more. Harmless where that is refused.
inline void raiseDescriptorLimit()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace veranox
