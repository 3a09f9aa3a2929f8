#include "Service/Nodes/Lab/LabPhase.h"

namespace veranox {

LabPhase phaseOf(const LabProfile &profile, LabTime elapsed)
{
    using Kind = LabPhase::Kind;
    const LabTime known = profile.settlesAfter / 4;
    const LabTime settled = profile.settlesAfter;
    if (profile.failure && elapsed >= profile.failure->after)
        return {Kind::Failed, profile.failure->after, profile.failure->text};
    if (elapsed < known)
        return {Kind::Unknown, LabTime(0), ""};
    if (elapsed < settled)
        return {Kind::Starting, known, ""};
    const bool asksForEver = profile.needsLogin && !profile.approvedAfter;
    const LabTime approved = settled + profile.approvedAfter.value_or(LabTime(0));
    if (asksForEver || elapsed < approved)
        return {Kind::Asking, settled, ""};
    return {Kind::Running, approved, ""};
}

} // namespace veranox
