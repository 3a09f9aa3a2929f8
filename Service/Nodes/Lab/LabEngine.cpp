#include "Service/Nodes/Lab/LabEngine.h"

namespace veranox {

namespace {

using Kind = LabPhase::Kind;

struct NodeWords {
    std::string state;
    std::string error;
};

NodeWords wordsFor(const LabPhase &phase, bool needsLogin)
{
    switch (phase.kind) {
    case Kind::unknown:
        return {"NoState", "The node has not reported its state yet."};
    case Kind::starting:
        return {"Starting", "The node is joining its tailnet."};
    case Kind::asking:
        return needsLogin ? NodeWords{"NeedsLogin", "The node needs an interactive login."}
                          : NodeWords{"NeedsMachineAuth", "The node waits for an admin of its tailnet to approve it."};
    case Kind::running:
        return {"Running", ""};
    case Kind::failed:
        return {"Stopped", phase.failure};
    }
    return {};
}

} // namespace

LabEngine::LabEngine(LabNetwork network, const TimeSource &time)
    : m_network(std::move(network)),
      m_time(time),
      m_steadyStart(time.steadyNow()),
      m_wallStart(time.wallNow())
{
}

LabTime LabEngine::elapsed() const
{
    return std::chrono::floor<LabTime>(m_time.steadyNow() - m_steadyStart);
}

LabSession LabEngine::sessionOf(const std::string &profile) const
{
    const auto known = m_sessions.find(profile);
    return known == m_sessions.end() ? LabSession{} : known->second;
}

LabPhase LabEngine::nodePhase(const std::string &name, const LabProfile &profile) const
{
    return phaseOf(profile, sessionOf(name), elapsed());
}

NodeStatus LabEngine::profileStatus(const std::string &profile) const
{
    const LabProfile *lab = findNamed(m_network.profiles, profile);
    if (!lab)
        return {.ok = false,
            .backendState = "Stopped",
            .raw = "",
            .error = unknownLabProfile(profile),
            .since = m_wallStart};
    const LabPhase phase = nodePhase(profile, *lab);
    const NodeWords words = wordsFor(phase, needsLogin(*lab, sessionOf(profile)));
    return {.ok = phase.kind == Kind::running,
        .backendState = words.state,
        .raw = "lab node on tailnet " + lab->tailnet + ": " + words.state,
        .error = words.error,
        .since = m_wallStart + phase.since};
}

} // namespace veranox
