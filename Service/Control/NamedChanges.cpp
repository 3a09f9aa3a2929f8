#include "Service/Control/NamedChanges.h"

#include "Service/Text/Refusal.h"
#include "Service/Text/Words.h"
#include <algorithm>
#include <utility>

namespace veranox {

namespace json = boost::json;

namespace {

void renameInFile(ConfigDocument &document, std::string_view section, const std::string &from, const std::string &to)
{
    json::value *read = document.asRead.if_contains(section);
    json::object *records = read ? read->if_object() : nullptr;
    const json::value *record = records ? records->if_contains(from) : nullptr;
    if (!record)
        return;
    json::value moved = *record;
    records->erase(from);
    (*records)[to] = std::move(moved);
}

template <class Settings> void put(NamedList<Settings> &list, SaveRequest<Settings> save)
{
    const std::string place = save.originalName.value_or(save.name);
    const auto found = std::ranges::find(list, place, &std::pair<std::string, Settings>::first);
    if (found == list.end())
        list.emplace_back(std::move(save.name), std::move(save.settings));
    else
        *found = {std::move(save.name), std::move(save.settings)};
}

} // namespace

std::string shownName(const std::string &name)
{
    constexpr std::size_t longestNameShown = 80;
    return "\"" + shortened(printable(name), longestNameShown) + "\"";
}

template <class Settings>
void checkNames(std::string_view kind, const NamedList<Settings> &list, const SaveRequest<Settings> &save)
{
    const std::string what(kind);
    if (!isValidName(save.name))
        throw Refusal(Refusal::Kind::badInput,
            "The " + what + " name " + shownName(save.name) + " " + std::string(nameRule) + ".");
    if (save.originalName && !findNamed(list, *save.originalName))
        throw Refusal(Refusal::Kind::unknown, "The " + what + " " + shownName(*save.originalName) + " does not exist.");
    if (save.originalName != save.name && findNamed(list, save.name))
        throw Refusal(Refusal::Kind::conflict, "A " + what + " named " + shownName(save.name) + " already exists.");
}

template <class Settings>
const Settings &requireNamed(std::string_view kind, const NamedList<Settings> &list, const std::string &name)
{
    if (const Settings *found = findNamed(list, name))
        return *found;
    throw Refusal(Refusal::Kind::unknown, "The " + std::string(kind) + " " + shownName(name) + " is not configured.");
}

template <class Settings>
Settings &requireNamed(std::string_view kind, NamedList<Settings> &list, const std::string &name)
{
    requireNamed(kind, std::as_const(list), name);
    return std::ranges::find(list, name, &std::pair<std::string, Settings>::first)->second;
}

void putTunnel(ConfigDocument &document, SaveRequest<TunnelSettings> save)
{
    renameInFile(document, "Tunnels", save.originalName.value_or(save.name), save.name);
    put(document.tunnels, std::move(save));
}

void putPublication(ConfigDocument &document, SaveRequest<PublicationSettings> save)
{
    renameInFile(document, "Publications", save.originalName.value_or(save.name), save.name);
    put(document.publications, std::move(save));
}

template void checkNames(
    std::string_view kind, const NamedList<TunnelSettings> &list, const SaveRequest<TunnelSettings> &save);
template void checkNames(
    std::string_view kind, const NamedList<PublicationSettings> &list, const SaveRequest<PublicationSettings> &save);
template const TunnelSettings &requireNamed(
    std::string_view kind, const NamedList<TunnelSettings> &list, const std::string &name);
template const PublicationSettings &requireNamed(
    std::string_view kind, const NamedList<PublicationSettings> &list, const std::string &name);
template TunnelSettings &requireNamed(std::string_view kind, NamedList<TunnelSettings> &list, const std::string &name);
template PublicationSettings &requireNamed(
    std::string_view kind, NamedList<PublicationSettings> &list, const std::string &name);

} // namespace veranox
