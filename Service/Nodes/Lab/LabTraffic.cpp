#include "Service/Nodes/Lab/LabEngine.h"
#include "Service/Nodes/Lab/NextMoment.h"

namespace veranox {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

void considerNode(NextMoment &moment, const LabProfile &profile, const LabSession &session)
{
    const LabTime approval = profile.approvedAfter.value_or(LabTime(0));
    moment.consider(profile.settlesAfter / 4);
    moment.consider(profile.settlesAfter);
    moment.consider(profile.settlesAfter + approval);
    if (session.login)
        moment.consider(*session.login + approval);
    moment.consider(LabTime(0), profile.failure);
}

} // namespace

std::optional<std::chrono::steady_clock::time_point> LabEngine::nextChange() const
{
    NextMoment moment(elapsed());
    for (const auto &[name, profile] : m_network.profiles)
        considerNode(moment, profile, sessionOf(name));
    const std::optional<LabTime> next = moment.next();
    return next ? std::optional(steadyTime(*next)) : std::nullopt;
}

std::string LabEngine::hostProblem(const std::string &profile, const std::string &host) const
{
    return m_dialer.hostProblem(profile, host);
}

std::vector<std::string> LabEngine::resolve(const std::string &profile, const std::string &host) const
{
    return m_dialer.resolve(profile, host);
}

NodeNames LabEngine::nodeNames(const std::string &profile, const std::string &hostname) const
{
    const LabProfile *known = findNamed(m_network.profiles, profile);
    if (!known)
        return {.hostName = hostname, .dnsName = "", .addresses = {}};
    NodeNames names{.hostName = hostname,
        .dnsName = hostname + findNamed(m_network.tailnets, known->tailnet)->suffix,
        .addresses = {}};
    for (const std::string &address : {known->policy.hint.nodeIP, known->nodeAddress})
        if (!address.empty())
            names.addresses.push_back(address);
    return names;
}

asio::awaitable<tcp::socket> LabEngine::dial(std::string profile, std::string host, std::uint16_t port)
{
    const NodeStatus node = profileStatus(profile);
    if (!node.ok)
        throw NetworkProblem("Profile \"" + profile + "\" is not running: " + node.error);
    co_return co_await m_dialer.dial(std::move(profile), std::move(host), port);
}

NodePort LabEngine::openPort(
    const asio::any_io_executor &executor, const std::string &profile, const std::string &hostname, std::uint16_t port)
{
    return m_dialer.openPort(executor, profile, hostname, port);
}

void LabEngine::stop()
{
    m_dialer.stop();
}

} // namespace veranox
