#pragma once
#include "Service/Files/UserFolders.h"
#include <filesystem>
#include <optional>
#include <string>

namespace veranox {

/// Where a command is that PATH or an absolute path names and that this user may run; nothing when there is none.
std::optional<std::filesystem::path> findProgram(const std::string &command, const Environment &environment);

} // namespace veranox
