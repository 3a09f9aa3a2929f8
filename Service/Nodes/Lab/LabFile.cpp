#include "Service/Nodes/Lab/LabFile.h"

#include "Service/Files/Folder.h"
#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonText.h"
#include "Service/Json/NamedRecords.h"
#include "Service/Nodes/Lab/LabDemo.h"
#include "Service/Nodes/Lab/LabHostText.h"
#include "Service/Text/ServiceProblem.h"
#include <boost/asio/ip/address.hpp>
#include <system_error>

namespace veranox {

namespace json = boost::json;

namespace {

constexpr NumberRange countRange{0, 1'000'000};

std::optional<LabTime> readTime(JsonReader &reader, std::string_view key)
{
    const std::optional<double> seconds = reader.seconds(key);
    return seconds ? std::optional(LabTime(static_cast<std::int64_t>(*seconds * 1000))) : std::nullopt;
}

std::optional<LabFailure> readFailure(JsonReader &reader, LabTime usualMoment)
{
    const std::string text = reader.text("fails", "");
    const std::optional<LabTime> after = readTime(reader, "fails_after_s");
    if (!text.empty())
        return LabFailure{text, after.value_or(usualMoment)};
    if (after)
        reader.complain("fails_after_s", "needs the key \"fails\" with the text of the failure beside it");
    return std::nullopt;
}

LabTailnet readTailnet(JsonReader reader)
{
    LabTailnet tailnet{.suffix = reader.text("suffix"), .hosts = {}};
    if (tailnet.suffix.size() < 2 || !tailnet.suffix.starts_with('.'))
        reader.complain("suffix", "must begin with a full stop, for example \".tail1a2b.ts.net\"");
    if (std::optional<JsonReader> hosts = reader.objectIfPresent("hosts"))
        hosts->eachMember([&](const std::string &name, const json::value &value, const std::string &place) {
            tailnet.hosts.emplace_back(name, readLabHost(value, place));
        });
    reader.refuseUnread();
    return tailnet;
}

void readAdmits(JsonReader &reader, LabPolicy &policy)
{
    const json::value *value = reader.find("admits");
    if (value && value->is_number()) {
        policy.admits = LabPolicy::Admits::some;
        policy.devices = reader.number("admits", countRange);
        return;
    }
    if (value && !value->is_string())
        reader.complain("admits", R"(must be "everyone", "nobody", "unknown" or a number of devices)");
    const std::string word = reader.word("admits", {"everyone", "nobody", "unknown"}, "everyone");
    policy.admits = word == "everyone" ? LabPolicy::Admits::everyone
        : word == "nobody"             ? LabPolicy::Admits::nobody
                                       : LabPolicy::Admits::unknown;
}

/// The two entries in the form of the tailnet's policy file, unless the lab file gives its own.
void completeHint(PolicyHint &hint)
{
    if (hint.hostsEntry.empty())
        hint.hostsEntry = "\"" + hint.hostAlias + "\": \"" + hint.nodeIP + "\",";
    if (hint.grant.empty())
        hint.grant = R"({"src": [")" + hint.source + R"("], "dst": [")" + hint.hostAlias + R"("], "ip": ["*"]},)";
}

PolicyHint readHint(JsonReader reader)
{
    PolicyHint hint{.hostAlias = reader.text("host_alias"),
        .nodeIP = reader.text("node_ip"),
        .source = reader.text("source", "autogroup:member"),
        .hostsEntry = reader.text("hosts_entry", ""),
        .grant = reader.text("grant", ""),
        .policyURL = reader.text("policy_url", "")};
    reader.refuseUnread();
    completeHint(hint);
    return hint;
}

LabPolicy readPolicy(JsonReader reader)
{
    LabPolicy policy;
    readAdmits(reader, policy);
    policy.detail = reader.text("detail", "");
    if (policy.admits == LabPolicy::Admits::nobody)
        policy.hint = readHint(reader.object("hint"));
    reader.refuseUnread();
    return policy;
}

std::string readNodeAddress(JsonReader &reader)
{
    const std::string text = reader.text("node_address", "");
    boost::system::error_code unreadable;
    if (!text.empty() && (!boost::asio::ip::make_address(text, unreadable).is_loopback() || unreadable))
        reader.complain("node_address", "must be an address of loopback, for example \"127.80.0.1\"");
    return text;
}

LabProfile readLabProfile(JsonReader reader)
{
    LabProfile profile;
    profile.tailnet = reader.text("tailnet");
    profile.settlesAfter = readTime(reader, "settles_after_s").value_or(LabTime(0));
    profile.needsLogin = reader.flag("needs_login", false);
    profile.approvedAfter = readTime(reader, "approved_after_s");
    profile.failure = readFailure(reader, profile.settlesAfter);
    if (std::optional<JsonReader> policy = reader.objectIfPresent("policy"))
        profile.policy = readPolicy(*policy);
    profile.nodeAddress = readNodeAddress(reader);
    if (std::optional<JsonReader> config = reader.objectIfPresent("config"))
        profile.config = readProfile(*config);
    reader.refuseUnread();
    return profile;
}

template <class Settings>
LabForwarding<Settings> readForwarding(JsonReader &reader, Settings (*readSettings)(JsonReader))
{
    LabForwarding<Settings> forwarding;
    forwarding.startsAfter = readTime(reader, "starts_after_s").value_or(LabTime(0));
    forwarding.failure = readFailure(reader, forwarding.startsAfter);
    forwarding.activeConns = reader.number("active_connections", countRange, 0);
    forwarding.isActed = reader.flag("acted", false);
    if (std::optional<JsonReader> config = reader.objectIfPresent("config"))
        forwarding.config = readSettings(*config);
    reader.refuseUnread();
    return forwarding;
}

LabTunnel readLabTunnel(JsonReader reader)
{
    return readForwarding<TunnelSettings>(reader, readTunnel);
}

LabPublication readLabPublication(JsonReader reader)
{
    return readForwarding<PublicationSettings>(reader, readPublication);
}

void requireTailnets(const LabNetwork &network)
{
    for (const auto &[name, profile] : network.profiles)
        if (!findNamed(network.tailnets, profile.tailnet))
            throw JsonProblem(
                "profiles." + name + ".tailnet", "names \"" + profile.tailnet + "\", which is not among the tailnets");
}

} // namespace

LabNetwork parseLab(std::string_view text)
{
    const json::value value = parseJson(text);
    JsonReader reader(value, "");
    reader.number("version", {1, 1});
    LabNetwork network{.tailnets = readNamed<LabTailnet>(reader.object("tailnets"), readTailnet),
        .profiles = readNamed<LabProfile>(reader.objectIfPresent("profiles"), readLabProfile),
        .tunnels = readNamed<LabTunnel>(reader.objectIfPresent("tunnels"), readLabTunnel),
        .publications = readNamed<LabPublication>(reader.objectIfPresent("publications"), readLabPublication)};
    reader.refuseUnread();
    requireTailnets(network);
    return network;
}

LabNetwork loadLab(const std::string &fileOrDemo)
{
    constexpr std::size_t sizeLimit = 1024 * 1024;
    if (fileOrDemo == "demo")
        return parseLab(labDemoText());
    try {
        return parseLab(readWholeFile(fileOrDemo, sizeLimit));
    } catch (const JsonProblem &problem) {
        throw ServiceProblem("The lab file " + fileOrDemo + " is not valid: at " + problem.place + ": " + problem.text
            + "; mend it and start again.");
    } catch (const std::system_error &failure) {
        throw ServiceProblem("The lab file " + fileOrDemo + " cannot be used (" + failure.what()
            + "); name a readable file, or \"demo\" for the built-in network.");
    }
}

} // namespace veranox
