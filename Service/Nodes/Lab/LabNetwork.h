#pragma once
#include "Service/Config/ProfileSettings.h"
#include "Service/Config/TunnelSettings.h"
#include "Service/Publications/PublicationRecord.h"
#include "Service/Text/NamedList.h"
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace veranox {

using LabTime = std::chrono::milliseconds;

/// What answers on a simulated tailnet under a host name.
struct LabHost {
    enum class Kind { address, site, echo, blackhole };

    Kind kind = Kind::site;
    std::string address; // of Kind::address: 127.x.y.z or ::1
    std::uint16_t port = 0; // of Kind::address: 0 leads to the port that was asked for

    bool operator==(const LabHost &) const = default;
};

struct LabTailnet {
    std::string suffix;
    NamedList<LabHost> hosts;
};

/// Something that breaks: why, and how long after it could first have run.
struct LabFailure {
    std::string text;
    LabTime after{0};
};

/// Whom the tailnet's policy lets connect to this computer's node.
struct LabPolicy {
    enum class Admits { everyone, nobody, some, unknown };

    Admits admits = Admits::everyone;
    std::int64_t devices = 0; // of Admits::some
    std::string detail; // of Admits::unknown: why it is not known
    PolicyHint hint; // of Admits::nobody
};

/// How the node of a profile fares over time, counted from the start of the service.
struct LabProfile {
    std::string tailnet;
    LabTime settlesAfter{0};
    bool needsLogin = false; // asks for a login when it has settled, otherwise, if it must be approved, for that
    // How long it asks: for a login counted from POST login, where absent means for ever with needsLogin and not at all
    // after a logout; for an approval counted from when it has settled.
    std::optional<LabTime> approvedAfter;
    std::optional<LabFailure> failure; // counted from the start of the service
    LabPolicy policy;
    std::string nodeAddress; // loopback address at which the node's published ports are; empty: a free port each
    std::optional<ProfileSettings> config;
};

/// How a tunnel or publication fares, counted from the moment its profile's node runs.
template <class Settings> struct LabForwarding {
    LabTime startsAfter{0};
    std::optional<LabFailure> failure;
    std::int64_t activeConns = 0; // while it listens, beside the real ones
    bool isActed = false; // only shows its state and carries nothing
    std::optional<Settings> config;
};

using LabTunnel = LabForwarding<TunnelSettings>;
using LabPublication = LabForwarding<PublicationSettings>;

/// A simulated network: what the file says, checked.
struct LabNetwork {
    NamedList<LabTailnet> tailnets;
    NamedList<LabProfile> profiles;
    NamedList<LabTunnel> tunnels;
    NamedList<LabPublication> publications;
};

/// What there is to say about a profile that the network does not describe.
inline std::string unknownLabProfile(const std::string &profile)
{
    return "The lab network does not describe a profile \"" + profile + "\"; add it to the lab file.";
}

} // namespace veranox
