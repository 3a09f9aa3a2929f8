#pragma once
#include "Service/Nodes/Lab/LabNetwork.h"

namespace veranox {

/// What a simulated node or forwarding does at one moment, and since when.
struct LabPhase {
    enum class Kind { unknown, starting, asking, running, failed };

    Kind kind = Kind::unknown;
    LabTime since{0};
    std::string failure; // of Kind::failed

    bool operator==(const LabPhase &) const = default;
};

/// What has been done about the login of a node since the start of the service.
struct LabSession {
    std::optional<LabTime> loggedOut; // when it was last signed out
    std::optional<LabTime> login; // when the sign-in that now counts was begun; gone with a logout

    bool operator==(const LabSession &) const = default;
};

/// True when the node asks a person for a login and not for an approval alone.
bool needsLogin(const LabProfile &profile, const LabSession &session);

/// A node is unknown for the first quarter of its time to settle, then starting, then asks for what it needs, then
/// runs; a failure ends all that for good.
LabPhase phaseOf(const LabProfile &profile, const LabSession &session, LabTime elapsed);

/// A tunnel or publication starts until its node runs and its own time has passed. A node that failed fails it too.
template <class Settings>
LabPhase phaseOf(const LabForwarding<Settings> &forwarding, const LabPhase &node, LabTime elapsed)
{
    if (node.kind == LabPhase::Kind::failed)
        return node;
    if (node.kind != LabPhase::Kind::running)
        return {LabPhase::Kind::starting, LabTime(0), ""};
    if (forwarding.failure && elapsed >= node.since + forwarding.failure->after)
        return {LabPhase::Kind::failed, node.since + forwarding.failure->after, forwarding.failure->text};
    if (elapsed < node.since + forwarding.startsAfter)
        return {LabPhase::Kind::starting, LabTime(0), ""};
    return {LabPhase::Kind::running, node.since + forwarding.startsAfter, ""};
}

} // namespace veranox
