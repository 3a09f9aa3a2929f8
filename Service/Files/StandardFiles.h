#pragma once
#include <fcntl.h>
#include <unistd.h>

namespace veranox {

/// Puts /dev/null in the place of standard input, output and error where this program was started without one of them:
/// otherwise the next file or connection would get that number, and the log would go to whoever is there. To be called
/// before anything is opened.
inline void openStandardFiles()
{
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(number, F_GETFD) < 0)
            ::open("/dev/null", O_RDWR); // the lowest free number, which is this one
}

} // namespace veranox
