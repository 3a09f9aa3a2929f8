#include "Service/Nodes/Lab/LabPhase.h"

namespace veranox {

bool needsLogin(const LabProfile &profile, const LabSession &session)
{
    return profile.needsLogin || session.loggedOut;
}

namespace {

/// When the node stops to ask, given that it begins to at `asksFrom`; nothing while that cannot be told.
std::optional<LabTime> approvalTime(const LabProfile &profile, const LabSession &session, LabTime asksFrom)
{
    if (!needsLogin(profile, session))
        return asksFrom + profile.approvedAfter.value_or(LabTime(0));
    const bool isNeverApproved = profile.needsLogin && !profile.approvedAfter;
    if (!session.login || isNeverApproved)
        return std::nullopt;
    return *session.login + profile.approvedAfter.value_or(LabTime(0));
}

} // namespace

LabPhase phaseOf(const LabProfile &profile, const LabSession &session, LabTime elapsed)
{
    using Kind = LabPhase::Kind;
    const LabTime known = profile.settlesAfter / 4;
    const LabTime asksFrom = session.loggedOut.value_or(profile.settlesAfter);
    if (profile.failure && elapsed >= profile.failure->after)
        return {Kind::failed, profile.failure->after, profile.failure->text};
    if (!session.loggedOut && elapsed < known)
        return {Kind::unknown, LabTime(0), ""};
    if (!session.loggedOut && elapsed < profile.settlesAfter)
        return {Kind::starting, known, ""};
    const std::optional<LabTime> approved = approvalTime(profile, session, asksFrom);
    if (!approved || elapsed < *approved)
        return {Kind::asking, asksFrom, ""};
    return {Kind::running, *approved, ""};
}

} // namespace veranox
