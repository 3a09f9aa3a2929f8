#pragma once
#include <filesystem>

namespace veranox {

/// Where the file of this very program is. Throws std::system_error when the system does not tell.
std::filesystem::path ownExecutable();

} // namespace veranox
