#include "Publications/VeranoxPublication.h"
#include "API/Json/Codec.h"

template <> struct json::Layout<VeranoxPublicationPolicyHint> {
    using Hint = VeranoxPublicationPolicyHint;
    static constexpr std::tuple fields{
        field("HostAlias", &Hint::hostAlias, ""),
        field("NodeIP", &Hint::nodeIP, ""),
        field("Source", &Hint::source, ""),
        field("HostsEntry", &Hint::hostsEntry, ""),
        field("Grant", &Hint::grant, ""),
        field("PolicyURL", &Hint::policyURLString, ""),
    };
};

template <> struct json::Layout<VeranoxPublicationReachability> {
    using Reachability = VeranoxPublicationReachability;
    static constexpr std::tuple fields{
        field("State", &Reachability::state, ""),
        field("Peers", &Reachability::peers, 0),
        field("Everyone", &Reachability::everyone, false),
        field("Detail", &Reachability::detail, ""),
        forgiving("Hint", &Reachability::hint),
    };
};

// The last two say nothing that a list would be worth losing for.
template <> struct json::Layout<VeranoxPublication> {
    static constexpr std::tuple fields{
        field("Name", &VeranoxPublication::name, ""),
        field("DisplayName", &VeranoxPublication::displayName, ""),
        field("Profile", &VeranoxPublication::profile, ""),
        field("Target", &VeranoxPublication::target, ""),
        field("Reach", &VeranoxPublication::reach, "tailnet"),
        field("Port", &VeranoxPublication::port, 0),
        field("TLS", &VeranoxPublication::tls, false),
        field("Disabled", &VeranoxPublication::disabled, false),
        field("State", &VeranoxPublication::state, "stopped"),
        field("Address", &VeranoxPublication::address, ""),
        field("ActiveConns", &VeranoxPublication::activeConns, 0),
        field("LastError", &VeranoxPublication::lastError, ""),
        forgiving("LastActive", &VeranoxPublication::lastActive),
        forgiving("Reachability", &VeranoxPublication::reachability),
    };
};

template VeranoxPublicationReachability decodeRecord(const QByteArray &);
template VeranoxPublication decodeRecord(const QByteArray &);
template QList<VeranoxPublication> decodeRecord(const QByteArray &);
