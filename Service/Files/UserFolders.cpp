#include "Service/Files/UserFolders.h"

#include "Service/Text/ServiceProblem.h"
#include <cstdlib>

namespace veranox {

namespace {

/// The folder that a variable names, when it is one that can be told without knowing where the process stands.
std::optional<std::filesystem::path> absoluteFolder(const Environment &environment, const std::string &variable)
{
    const std::optional<std::string> value = environment(variable);
    if (!value || !std::filesystem::path(*value).is_absolute())
        return std::nullopt;
    return std::filesystem::path(*value);
}

std::filesystem::path homeFolder(const Environment &environment)
{
    if (const auto home = absoluteFolder(environment, "HOME"))
        return *home;
    throw ServiceProblem("The environment variable HOME does not name a folder; set it to your home folder.");
}

std::filesystem::path folder(
    const Environment &environment, const std::string &variable, const std::filesystem::path &inHome)
{
    const auto named = absoluteFolder(environment, variable);
    return named ? *named : homeFolder(environment) / inHome;
}

} // namespace

std::optional<std::string> processEnvironment(const std::string &name)
{
    const char *value = std::getenv(name.c_str());
    return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

UserFolders userFolders(const Environment &environment)
{
    return {.applicationSupport = folder(environment, "XDG_DATA_HOME", ".local/share") / "Veranox",
        .configuration = folder(environment, "XDG_CONFIG_HOME", ".config") / "veranox"};
}

} // namespace veranox
