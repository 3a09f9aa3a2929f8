#include "Service/Config/ConfigStore.h"

#include "Service/Config/DocumentCheck.h"
#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonText.h"
#include "Service/Text/Refusal.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/ShownPath.h"
#include "Service/Text/Timestamps.h"
#include <system_error>

namespace veranox {

namespace {

std::string atPlace(const JsonProblem &problem)
{
    return "is not valid: at " + problem.place + ": " + problem.text;
}

std::string withoutStop(std::string sentence)
{
    if (sentence.ends_with('.'))
        sentence.pop_back();
    return sentence;
}

} // namespace

ConfigStore::ConfigStore(std::filesystem::path folder) : m_file(std::move(folder)) { }

void ConfigStore::load(WallTime now, std::uint16_t controlPort)
{
    try {
        m_file.removeAbandoned();
        const std::optional<std::string> text = m_file.read();
        m_isNew = !text;
        if (!text)
            return;
        m_document = std::make_shared<const ConfigDocument>(read(*text, controlPort));
        m_knownText = std::make_shared<const std::string>(*text);
    } catch (const JsonSyntaxProblem &problem) {
        setAside(atPlace(problem), now);
    } catch (const NewerConfigProblem &problem) {
        throw ServiceProblem("The configuration file " + shownPath(file()) + " is too new: at " + problem.place + ": "
            + problem.text + "; update Veranox.");
    } catch (const JsonProblem &problem) {
        leave(atPlace(problem));
    } catch (const Refusal &refused) {
        leave("cannot be used: " + withoutStop(refused.what()));
    } catch (const std::system_error &failure) {
        leave(std::string("cannot be read: ") + failure.what());
    }
}

ConfigDocument ConfigStore::read(std::string_view text, std::uint16_t controlPort) const
{
    ConfigDocument document = parseConfig(text);
    if (configFileText(document).size() > sizeLimit)
        leave("is too large: with everything that it leaves out it has more than " + std::to_string(sizeLimit)
            + " bytes");
    checkDocument(document, controlPort);
    return document;
}

void ConfigStore::leave(const std::string &complaint) const
{
    throw ServiceProblem("The configuration file " + shownPath(file()) + " " + complaint
        + "; it was left as it is: mend it, or move it away to begin with an empty configuration.");
}

void ConfigStore::setAside(const std::string &complaint, WallTime now) const
{
    const std::string begin = "The configuration file " + shownPath(file()) + " " + complaint;
    std::filesystem::path keptAs;
    try {
        keptAs = m_file.setAside(fileTimestamp(now));
    } catch (const std::system_error &failure) {
        throw ServiceProblem(
            begin + "; it could not be set aside either (" + failure.what() + "), so mend or move it.");
    }
    throw ServiceProblem(begin + "; it was set aside as " + shownPath(keptAs)
        + ": start again to begin with an empty configuration, or mend that copy and give it back its name.");
}

void ConfigStore::adopt(ConfigDraft draft)
{
    m_document = std::make_shared<const ConfigDocument>(std::move(draft.document));
    m_knownText = std::move(draft.text);
    m_isNew = false;
    ++m_generation;
}

Durability ConfigStore::save(ConfigDocument document)
{
    ConfigDraft next = m_file.draft(std::move(document));
    const Durability durability = m_file.write(*next.text);
    adopt(std::move(next));
    return durability;
}

} // namespace veranox
