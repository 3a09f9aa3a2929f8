#include "API/Records/VeranoxPublication.h"
#include "Base/Json/Codec.h"

using namespace Qt::StringLiterals;

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

bool VeranoxPublication::hasError() const
{
    if (state == "blocked"_L1)
        return false;
    return state == "error"_L1 || !lastError.trimmed().isEmpty();
}

std::optional<QString> VeranoxPublication::visibleLastError() const
{
    const QString error = lastError.trimmed();
    const bool isHidden = disabled || state == "blocked"_L1 || error.isEmpty();
    return isHidden ? std::nullopt : std::optional(error);
}

bool VeranoxPublication::isUnreachable() const
{
    return state == "listening"_L1 && reachability.state.trimmed() == "unreachable"_L1;
}

VeranoxStatusBadge VeranoxPublication::stateBadge() const
{
    using Kind = VeranoxStatusBadge::Kind;
    if (state == "blocked"_L1)
        return {u"Not published"_s, Kind::offline};
    if (disabled)
        return {u"Disabled"_s, Kind::offline};
    const QString word = state.trimmed();
    if (word == "listening"_L1)
        return isUnreachable() ? VeranoxStatusBadge{u"Unreachable"_s, Kind::warning}
                               : VeranoxStatusBadge{u"Published"_s, Kind::ok};
    if (word == "starting"_L1)
        return {u"Starting"_s, Kind::warning};
    if (word == "error"_L1)
        return {u"Error"_s, Kind::error};
    if (word.isEmpty() || word == "stopped"_L1)
        return {u"Stopped"_s, Kind::offline};
    return {state, Kind::offline};
}

template VeranoxPublicationReachability decodeRecord(const QByteArray &);
template VeranoxPublication decodeRecord(const QByteArray &);
template QList<VeranoxPublication> decodeRecord(const QByteArray &);
