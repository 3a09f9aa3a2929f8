#pragma once
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace veranox {

/// Looks up an environment variable; empty counts as unset.
using Environment = std::function<std::optional<std::string>(const std::string &)>;

/// The environment of this process.
std::optional<std::string> processEnvironment(const std::string &name);

/// Where this user's files live.
struct UserFolders {
    std::filesystem::path applicationSupport; // holds the control token
    std::filesystem::path configuration; // holds config.json
};

/// Throws ServiceProblem when the environment names no home folder. A relative path in the environment is ignored.
UserFolders userFolders(const Environment &environment);

} // namespace veranox
