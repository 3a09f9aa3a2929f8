#include "Service/Config/ConfigStore.h"

#include "Service/Files/Folder.h"
#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonText.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/ShownPath.h"
#include "Service/Text/Timestamps.h"
#include <system_error>

namespace veranox {

namespace {

const std::string fileName = "config.json";
constexpr unsigned ownerReadsAndWrites = 0600;

/// "config.json.damaged-20250301T081530Z", with a number behind it where that is taken.
std::string freeNameFor(const Folder &folder, std::string_view why, WallTime now)
{
    const std::string name = fileName + "." + std::string(why) + "-" + fileTimestamp(now);
    std::string candidate = name;
    for (int number = 2; folder.contains(candidate); ++number)
        candidate = name + "-" + std::to_string(number);
    return candidate;
}

Folder openFolder(const std::filesystem::path &path)
{
    try {
        return Folder::openOrMake(path, false);
    } catch (const std::exception &failure) {
        throw ServiceProblem("The configuration folder " + shownPath(path) + " cannot be used (" + failure.what()
            + "); make it a folder of yours that you may write to, or set XDG_CONFIG_HOME to another place.");
    }
}

} // namespace

ConfigStore::ConfigStore(std::filesystem::path folder) : m_folder(std::move(folder)) { }

void ConfigStore::load(WallTime now)
{
    std::string complaint;
    try {
        const Folder folder = openFolder(m_folder);
        folder.removeAbandoned(fileName);
        const std::optional<std::string> text = folder.read(fileName, sizeLimit);
        m_isNew = !text;
        ConfigDocument document = text ? parseConfig(*text) : ConfigDocument{};
        if (configFileText(document).size() <= sizeLimit) {
            m_document = std::make_shared<const ConfigDocument>(std::move(document));
            m_fileText = text.value_or("");
            return;
        }
        complaint =
            "is too large: with everything that it leaves out it has more than " + std::to_string(sizeLimit) + " bytes";
    } catch (const NewerConfigProblem &problem) {
        throw ServiceProblem("The configuration file " + shownPath(file()) + " is too new: at " + problem.place + ": "
            + problem.text + "; update Veranox.");
    } catch (const JsonProblem &problem) {
        complaint = "is not valid: at " + problem.place + ": " + problem.text;
    } catch (const std::system_error &failure) {
        complaint = std::string("cannot be read: ") + failure.what();
    }
    setAside(complaint, now);
}

void ConfigStore::setAside(const std::string &complaint, WallTime now) const
{
    const std::string begin = "The configuration file " + shownPath(file()) + " " + complaint;
    std::string keptAs;
    try {
        const Folder folder = openFolder(m_folder);
        keptAs = freeNameFor(folder, "damaged", now);
        folder.rename(fileName, keptAs);
    } catch (const std::system_error &failure) {
        throw ServiceProblem(
            begin + "; it could not be set aside either (" + failure.what() + "), so mend or move it.");
    }
    throw ServiceProblem(begin + "; it was set aside as " + shownPath(m_folder / keptAs)
        + ": start again to begin with an empty configuration, or mend that copy and give it back its name.");
}

void ConfigStore::save(ConfigDocument document)
{
    document.asRead = configFile(document);
    std::string text = prettyJson(document.asRead);
    if (text.size() > sizeLimit)
        throw ServiceProblem("The configuration file " + shownPath(file()) + " would have more than "
            + std::to_string(sizeLimit) + " bytes and could not be read again; remove something.");
    try {
        openFolder(m_folder).replace(fileName, text, ownerReadsAndWrites);
    } catch (const std::system_error &failure) {
        throw ServiceProblem("The configuration file " + shownPath(file()) + " could not be written (" + failure.what()
            + "); make room or let yourself write there.");
    }
    m_document = std::make_shared<const ConfigDocument>(std::move(document));
    m_fileText = std::move(text);
    m_isNew = false;
    ++m_generation;
}

bool ConfigStore::isChangedByOthers() const
{
    try {
        const std::optional<std::string> text = openFolder(m_folder).read(fileName, sizeLimit);
        return text && *text != m_fileText;
    } catch (const std::system_error &) {
        return true;
    }
}

void ConfigStore::keepChanged(WallTime now) const
{
    try {
        const Folder folder = openFolder(m_folder);
        if (const std::optional<std::string> text = folder.read(fileName, sizeLimit))
            folder.replace(freeNameFor(folder, "replaced", now), *text, ownerReadsAndWrites);
    } catch (const std::system_error &failure) {
        throw ServiceProblem("The configuration file " + shownPath(file())
            + " was changed by another program, and a copy of it could not be kept (" + failure.what()
            + "); mend or move the file.");
    }
}

} // namespace veranox
