#include "Service/Files/OwnExecutable.h"

#include <array>
#include <cstdint>
#include <mach-o/dyld.h>
#include <system_error>

namespace veranox {

std::filesystem::path ownExecutable()
{
    std::array<char, 4096> path{};
    auto size = static_cast<std::uint32_t>(path.size());
    if (::_NSGetExecutablePath(path.data(), &size) != 0)
        throw std::system_error(ENAMETOOLONG, std::generic_category(), "find the program's own file");
    return std::filesystem::canonical(path.data());
}

} // namespace veranox
