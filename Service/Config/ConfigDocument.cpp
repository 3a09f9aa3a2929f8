#include "Service/Config/ConfigDocument.h"

#include "Service/Config/PortPlan.h"
#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonText.h"
#include "Service/Json/NamedRecords.h"
#include <set>

namespace veranox {

namespace json = boost::json;

namespace {

RouterSettings readRouter(JsonReader reader)
{
    const RouterSettings defaults;
    return {.httpProxy = reader.text("HTTPProxy", defaults.httpProxy),
        .socks5Proxy = reader.text("SOCKS5Proxy", defaults.socks5Proxy),
        .pacListen = reader.text("PACListen", defaults.pacListen),
        .profileHTTPProxyBase = reader.number("ProfileHTTPProxyBase", portRange, defaults.profileHTTPProxyBase),
        .profileSOCKS5ProxyBase = reader.number("ProfileSOCKS5Base", portRange, defaults.profileSOCKS5ProxyBase),
        .profileUDPPortBase = reader.number("ProfileUDPPortBase", portOrNoneRange, defaults.profileUDPPortBase),
        .profileHostnameBase = reader.text("ProfileHostnameBase", defaults.profileHostnameBase),
        .tunnelListenBase = reader.number("TunnelListenBase", portRange, defaults.tunnelListenBase)};
}

json::object toJson(const RouterSettings &router)
{
    return {{"HTTPProxy", router.httpProxy}, {"SOCKS5Proxy", router.socks5Proxy}, {"PACListen", router.pacListen},
        {"ProfileHTTPProxyBase", router.profileHTTPProxyBase}, {"ProfileSOCKS5Base", router.profileSOCKS5ProxyBase},
        {"ProfileUDPPortBase", router.profileUDPPortBase}, {"ProfileHostnameBase", router.profileHostnameBase},
        {"TunnelListenBase", router.tunnelListenBase}};
}

TailscaleSettings readTailscale(JsonReader reader)
{
    return {.tailscaleBin = reader.text("TailscaleBin"), .tailscaledBin = reader.text("TailscaledBin")};
}

json::object toJson(const TailscaleSettings &tailscale)
{
    return {{"TailscaleBin", tailscale.tailscaleBin}, {"TailscaledBin", tailscale.tailscaledBin}};
}

PathSettings readPaths(JsonReader reader)
{
    return {.appSupportDir = reader.text("AppSupportDir"), .configDir = reader.text("ConfigDir")};
}

json::object toJson(const PathSettings &paths)
{
    return {{"AppSupportDir", paths.appSupportDir}, {"ConfigDir", paths.configDir}};
}

SecuritySettings readSecurity(JsonReader reader)
{
    return {.requireLoopbackListeners = reader.flag("RequireLoopbackListeners"),
        .allowCrossProfileFallback = reader.flag("AllowCrossProfileFallback"),
        .allowIPLiterals = reader.flag("AllowIPLiterals"),
        .allowUnknownTSNet = reader.flag("AllowUnknownTSNet")};
}

json::object toJson(const SecuritySettings &security)
{
    return {{"RequireLoopbackListeners", security.requireLoopbackListeners},
        {"AllowCrossProfileFallback", security.allowCrossProfileFallback},
        {"AllowIPLiterals", security.allowIPLiterals}, {"AllowUnknownTSNet", security.allowUnknownTSNet}};
}

template <class Record> json::object mapRecord(const NamedList<Record> &list)
{
    json::object object;
    for (const auto &[name, record] : list)
        object[name] = toJson(record);
    return object;
}

/// `newer` with the members of `older` that it does not know. With `isMap` the members themselves are the content, so
/// one that is gone stays gone.
json::object keepingUnknown(json::object newer, const json::value *older, bool isMap)
{
    const json::object *source = older ? older->if_object() : nullptr;
    if (!source)
        return newer;
    for (auto &[key, value] : newer)
        if (json::object *member = value.if_object(); member && isMap)
            *member = keepingUnknown(std::move(*member), source->if_contains(key), false);
    for (const auto &[key, value] : *source)
        if (!isMap && !newer.contains(key))
            newer.emplace(key, value);
    return newer;
}

bool isMapSection(std::string_view key)
{
    return key == "Profiles" || key == "Tunnels" || key == "Publications";
}

} // namespace

ConfigDocument parseConfig(std::string_view text)
{
    return readConfig(parseJson(text));
}

ConfigDocument readConfig(const json::value &value)
{
    JsonReader reader(value, "");
    const std::int64_t version = reader.number("Version", {1, INT32_MAX});
    if (version > ConfigDocument::currentVersion)
        throw NewerConfigProblem("Version", "is " + std::to_string(version) + ", which a newer Veranox wrote");
    return {.router = readRouter(reader.object("Router")),
        .tailscale = readTailscale(reader.object("Tailscale")),
        .paths = readPaths(reader.object("Paths")),
        .profiles = readNamed<ProfileSettings>(reader.objectIfPresent("Profiles"), readProfile),
        .security = readSecurity(reader.object("Security")),
        .tunnels = readNamed<TunnelSettings>(reader.objectIfPresent("Tunnels"), readTunnel),
        .publications = readNamed<PublicationSettings>(reader.objectIfPresent("Publications"), readPublication),
        .asRead = value.as_object()};
}

json::object configRecord(const ConfigDocument &document)
{
    return {{"Version", ConfigDocument::currentVersion}, {"Router", toJson(document.router)},
        {"Tailscale", toJson(document.tailscale)}, {"Paths", toJson(document.paths)},
        {"Profiles", mapRecord(document.profiles)}, {"Security", toJson(document.security)}};
}

json::object configFile(const ConfigDocument &document)
{
    json::object file = configRecord(document);
    file["Tunnels"] = mapRecord(document.tunnels);
    file["Publications"] = mapRecord(document.publications);
    for (auto &[key, value] : file)
        if (json::object *section = value.if_object())
            *section = keepingUnknown(std::move(*section), document.asRead.if_contains(key), isMapSection(key));
    const json::value asRead(document.asRead);
    return keepingUnknown(std::move(file), &asRead, false);
}

std::string configFileText(const ConfigDocument &document)
{
    return prettyJson(configFile(document));
}

bool assignTunnelAddresses(ConfigDocument &document, std::uint16_t controlPort)
{
    std::set<std::int64_t> taken;
    for (const std::vector<PortUse> &uses :
        {routerPorts(document, controlPort), tunnelPorts(document), publishedPorts(document)})
        for (const PortUse &use : uses)
            taken.insert(use.port);
    bool assigned = false;
    std::int64_t port = document.router.tunnelListenBase;
    for (auto &[name, tunnel] : document.tunnels) {
        while (tunnel.listen.empty() && port <= portRange.most) {
            if (const std::int64_t candidate = port++; taken.insert(candidate).second) {
                tunnel.listen = "127.0.0.1:" + std::to_string(candidate);
                assigned = true;
            }
        }
    }
    return assigned;
}

} // namespace veranox
