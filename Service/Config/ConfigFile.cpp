#include "Service/Config/ConfigFile.h"

#include "Service/Json/JsonText.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/ShownPath.h"
#include <system_error>

namespace veranox {

namespace fs = std::filesystem;

namespace {

constexpr const char *fileName = "config.json";
constexpr unsigned ownerReadsAndWrites = 0600;

/// "config.json.damaged-20250301T081530Z", with a number behind it where that is taken.
std::string freeName(const Folder &folder, std::string_view why, const std::string &moment)
{
    const std::string name = std::string(fileName) + "." + std::string(why) + "-" + moment;
    std::string candidate = name;
    for (int number = 2; folder.contains(candidate); ++number)
        candidate = name + "-" + std::to_string(number);
    return candidate;
}

} // namespace

ConfigFile::ConfigFile(fs::path folder) : m_folder(std::move(folder)) { }

Folder ConfigFile::folder() const
{
    try {
        return Folder::openOrMake(m_folder, false);
    } catch (const std::exception &failure) {
        throw ServiceProblem("The configuration folder " + shownPath(m_folder) + " cannot be used (" + failure.what()
            + "); make it a folder of yours that you may write to, or set XDG_CONFIG_HOME to another place.");
    }
}

ConfigFile::Place ConfigFile::place() const
{
    if (!fs::is_symlink(path()))
        return {.folder = folder(), .name = fileName};
    const fs::path target = fs::canonical(path());
    return {.folder = Folder::openOrMake(target.parent_path(), false), .name = target.filename()};
}

std::optional<std::string> ConfigFile::read() const
{
    if (fs::is_symlink(path()) && !fs::exists(path()))
        throw std::system_error(
            ENOENT, std::generic_category(), "following it to " + shownPath(fs::read_symlink(path())));
    return folder().read(fileName, sizeLimit);
}

bool ConfigFile::holdsOtherThan(std::string_view text) const
{
    try {
        const std::optional<std::string> now = folder().read(fileName, sizeLimit);
        return now && *now != text;
    } catch (const std::system_error &) {
        return true;
    }
}

ConfigDraft ConfigFile::draft(ConfigDocument document) const
{
    document.asRead = configFile(document);
    std::string text = prettyJson(document.asRead);
    if (text.size() > sizeLimit)
        throw ServiceProblem("The configuration file " + shownPath(path()) + " would have more than "
            + std::to_string(sizeLimit) + " bytes and could not be read again; remove something.");
    return {.document = std::move(document), .text = std::make_shared<const std::string>(std::move(text))};
}

Durability ConfigFile::write(std::string_view text) const
{
    try {
        const Place to = place();
        return to.folder.replace(to.name, text, ownerReadsAndWrites);
    } catch (const std::system_error &failure) {
        throw ServiceProblem("The configuration file " + shownPath(path()) + " could not be written (" + failure.what()
            + "); make room or let yourself write there.");
    }
}

void ConfigFile::keepCopy(const std::string &moment) const
{
    try {
        const Folder here = folder();
        if (const std::optional<std::string> text = here.read(fileName, sizeLimit))
            here.replace(freeName(here, "replaced", moment), *text, ownerReadsAndWrites);
    } catch (const std::system_error &failure) {
        throw ServiceProblem("The configuration file " + shownPath(path())
            + " was changed by another program, and a copy of it could not be kept (" + failure.what()
            + "); mend or move the file.");
    }
}

fs::path ConfigFile::setAside(const std::string &moment) const
{
    const Folder here = folder();
    const std::string name = freeName(here, "damaged", moment);
    here.rename(fileName, name);
    return m_folder / name;
}

void ConfigFile::removeAbandoned() const
{
    folder().removeAbandoned(fileName);
    if (fs::is_symlink(path()) && fs::exists(path())) {
        const Place target = place();
        target.folder.removeAbandoned(target.name);
    }
}

} // namespace veranox
