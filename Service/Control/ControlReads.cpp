#include "Service/Config/ProfileDefaults.h"
#include "Service/Control/ControlApi.h"
#include "Service/Files/Programs.h"
#include "Service/Profiles/ProfileRecord.h"
#include "Service/Text/ShownPath.h"
#include <boost/json/array.hpp>

namespace veranox {

namespace asio = boost::asio;
namespace json = boost::json;

ControlAnswer ControlApi::profiles(const Call &) const
{
    const ConfigDocument &document = m_parts.config.document();
    json::array list;
    for (std::size_t i = 0; i < document.profiles.size(); ++i)
        list.push_back(profileRecord(document, i, m_parts.nodes.profileStatus(document.profiles[i].first)));
    return success(std::move(list));
}

ControlAnswer ControlApi::config(const Call &) const
{
    return success(configRecord(m_parts.config.document()));
}

asio::awaitable<ControlAnswer> ControlApi::environment(Call)
{
    requireRoom(m_parts.lookUps);
    const std::string command = m_parts.config.document().tailscale.tailscaledBin;
    const std::optional<std::filesystem::path> program = co_await m_parts.lookUps.run(
        [command, environment = m_parts.environment] { return findProgram(command, environment); });
    co_return success(json::object{
        {"TailscaledAvailable", program.has_value()}, {"TailscaledBin", program ? shownPath(*program) : command}});
}

// Whatever carries the traffic need not know which profiles are configured: here they are known.
TunnelStatus ControlApi::tunnelStatus(const std::string &name, const TunnelSettings &settings) const
{
    if (!settings.disabled && !findNamed(m_parts.config.document().profiles, settings.profile))
        return {.state = "error", .activeConns = 0, .lastError = unconfiguredProfile(settings.profile)};
    return m_parts.traffic.tunnelStatus(name);
}

PublicationStatus ControlApi::publicationStatus(const std::string &name, const PublicationSettings &settings) const
{
    const ConfigDocument &document = m_parts.config.document();
    const bool isServed = !settings.disabled && settings.reach != "funnel";
    if (!isServed || findNamed(document.profiles, settings.profile))
        return m_parts.traffic.publicationStatus(name);
    PublicationStatus status;
    status.state = "error";
    status.lastError = unconfiguredProfile(settings.profile);
    return status;
}

ControlAnswer ControlApi::tunnels(const Call &) const
{
    json::array list;
    for (const auto &[name, settings] : m_parts.config.document().tunnels)
        list.push_back(tunnelRecord(name, settings, tunnelStatus(name, settings)));
    return success(std::move(list));
}

ControlAnswer ControlApi::publications(const Call &) const
{
    json::array list;
    for (const auto &[name, settings] : m_parts.config.document().publications)
        list.push_back(publicationRecord(name, settings, publicationStatus(name, settings)));
    return success(std::move(list));
}

ControlAnswer ControlApi::health(const Call &) const
{
    return success(json::object{{"status", "ok"}});
}

} // namespace veranox
