#include "Service/Files/Programs.h"

#include <ranges>
#include <string_view>
#include <unistd.h>

namespace veranox {

namespace {

bool isProgram(const std::filesystem::path &path)
{
    std::error_code failure;
    return std::filesystem::is_regular_file(path, failure) && ::access(path.c_str(), X_OK) == 0;
}

} // namespace

std::optional<std::filesystem::path> findProgram(const std::string &command, const Environment &environment)
{
    if (std::filesystem::path(command).is_absolute())
        return isProgram(command) ? std::optional<std::filesystem::path>(command) : std::nullopt;
    if (command.empty() || command.find('/') != std::string::npos)
        return std::nullopt;
    const std::string folders = environment("PATH").value_or("");
    for (const auto folder : std::views::split(folders, ':')) {
        std::filesystem::path candidate = std::filesystem::path(std::string_view(folder)) / command;
        if (candidate.is_absolute() && isProgram(candidate))
            return candidate;
    }
    return std::nullopt;
}

} // namespace veranox
