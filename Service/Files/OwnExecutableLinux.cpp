#include "Service/Files/OwnExecutable.h"

namespace veranox {

std::filesystem::path ownExecutable()
{
    return std::filesystem::read_symlink("/proc/self/exe");
}

} // namespace veranox
