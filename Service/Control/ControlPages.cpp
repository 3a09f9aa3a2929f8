#include "Service/Control/ControlApi.h"
#include "Service/Control/QueryFields.h"
#include "Service/Page/StatusPage.h"

namespace veranox {

ControlAnswer ControlApi::statusPage(const Call &call) const
{
    const ConfigDocument &document = m_parts.config.document();
    StatusOverview overview{.document = document,
        .profiles = {},
        .tunnels = {},
        .publications = {},
        .version = VERANOX_VERSION,
        .now = m_parts.time.wallNow(),
        .reloads = QueryFields(call.target.query).flag("reload", false)};
    for (const auto &[name, settings] : document.profiles)
        overview.profiles.push_back(m_parts.nodes.profileStatus(name));
    for (const auto &[name, settings] : document.tunnels)
        overview.tunnels.push_back(tunnelStatus(name, settings));
    for (const auto &[name, settings] : document.publications)
        overview.publications.push_back(publicationStatus(name, settings));
    return success(WebDocument{.type = "text/html; charset=utf-8",
        .policy = std::string(statusPagePolicy),
        .text = veranox::statusPage(overview)});
}

ControlAnswer ControlApi::statusStyleSheet(const Call &) const
{
    return success(WebDocument{.type = "text/css; charset=utf-8",
        .policy = std::string(statusPagePolicy),
        .text = std::string(statusStyle())});
}

} // namespace veranox
