#include "Service/Nodes/Lab/LabEngine.h"

namespace veranox {

namespace {

using Kind = LabPhase::Kind;

NodeAction done(std::string output)
{
    return {.ok = true, .output = std::move(output), .error = "", .authURL = ""};
}

NodeAction refused(std::string error)
{
    return {.ok = false, .output = "", .error = std::move(error), .authURL = ""};
}

/// Nobody answers at this address: the name belongs to nobody, and the lab approves by itself.
std::string signInAddress(const std::string &profile, LabTime begun)
{
    return "https://login.tailnet.example/lab/" + profile + "/" + std::to_string(begun.count());
}

} // namespace

void LabEngine::setChanged(std::function<void()> changed)
{
    const std::scoped_lock lock(m_mutex);
    m_changed = std::move(changed);
}

void LabEngine::tellChange() const
{
    std::function<void()> changed;
    {
        const std::scoped_lock lock(m_mutex);
        changed = m_changed;
    }
    if (changed)
        changed();
}

boost::asio::awaitable<NodeAction> LabEngine::login(std::string profile)
{
    NodeAction action = loginNow(profile);
    tellChange();
    co_return action;
}

boost::asio::awaitable<NodeAction> LabEngine::logout(std::string profile)
{
    NodeAction action = logoutNow(profile);
    tellChange();
    co_return action;
}

LabSession LabEngine::beginLogin(const std::string &profile)
{
    const std::scoped_lock lock(m_mutex);
    LabSession &session = m_sessions[profile];
    if (!session.login)
        session.login = elapsed();
    return session;
}

NodeAction LabEngine::loginNow(const std::string &profile)
{
    const LabProfile *lab = findNamed(m_network.profiles, profile);
    if (!lab)
        return refused(profileStatus(profile).error);
    const LabPhase phase = nodePhase(profile, *lab);
    if (phase.kind == Kind::running)
        return done("The node is signed in to tailnet " + lab->tailnet + ".");
    if (phase.kind == Kind::failed)
        return refused(phase.failure);
    if (phase.kind != Kind::asking)
        return refused("The node is still starting; sign in once it asks for a login.");
    if (!needsLogin(*lab, sessionOf(profile)))
        return refused("The node waits for an admin of its tailnet to approve it.");
    const LabSession session = beginLogin(profile);
    if (nodePhase(profile, *lab).kind == Kind::running)
        return done("The node is signed in to tailnet " + lab->tailnet + ".");
    const std::string address = signInAddress(profile, *session.login);
    return {.ok = false, .output = "To sign in, visit " + address, .error = "", .authURL = address};
}

NodeAction LabEngine::logoutNow(const std::string &profile)
{
    const LabProfile *lab = findNamed(m_network.profiles, profile);
    if (!lab)
        return refused(profileStatus(profile).error);
    const LabPhase phase = nodePhase(profile, *lab);
    if (phase.kind == Kind::failed)
        return refused(phase.failure);
    {
        const std::scoped_lock lock(m_mutex);
        m_sessions[profile] = {.loggedOut = elapsed(), .login = std::nullopt};
    }
    return done("The node is signed out of tailnet " + lab->tailnet + ".");
}

} // namespace veranox
