#include "Service/Publications/PublicationRecord.h"

namespace veranox {

namespace json = boost::json;

namespace {

json::value toJson(const std::optional<PolicyHint> &hint)
{
    if (!hint)
        return nullptr;
    return json::object{{"HostAlias", hint->hostAlias}, {"NodeIP", hint->nodeIP}, {"Source", hint->source},
        {"HostsEntry", hint->hostsEntry}, {"Grant", hint->grant}, {"PolicyURL", hint->policyURL}};
}

json::object toJson(const Reachability &reachability)
{
    return {{"State", reachability.state}, {"Peers", reachability.peers}, {"Everyone", reachability.everyone},
        {"Detail", reachability.detail}, {"Hint", toJson(reachability.hint)}};
}

} // namespace

std::string publishedAddress(const PublicationSettings &settings, const std::string &host)
{
    std::string withPort = host + ":" + std::to_string(settings.port);
    if (!settings.tls)
        return withPort;
    return "https://" + (settings.port == 443 ? host : withPort);
}

json::object publicationRecord(
    const std::string &name, const PublicationSettings &settings, const PublicationStatus &status)
{
    return {{"Name", name}, {"DisplayName", settings.displayName}, {"Profile", settings.profile},
        {"Target", settings.target}, {"Reach", settings.reach}, {"Port", settings.port}, {"TLS", settings.tls},
        {"Disabled", settings.disabled}, {"State", status.state}, {"Address", status.address},
        {"ActiveConns", status.activeConns}, {"LastError", status.lastError}, {"LastActive", status.lastActive},
        {"Reachability", toJson(status.reachability)}};
}

} // namespace veranox
