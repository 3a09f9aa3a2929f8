#include "Service/Nodes/Lab/LabDialer.h"

#include "Service/Net/PortListener.h"
#include "Service/Text/Words.h"
#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>

namespace veranox {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);

/// The name under which a tailnet knows a host: without its suffix, in lower case.
std::string labelOf(const std::string &host, const std::string &suffix)
{
    std::string label = lowered(host);
    if (label.ends_with('.'))
        label.pop_back();
    if (label.ends_with(suffix))
        label.resize(label.size() - suffix.size());
    return label;
}

std::string at(const std::string &host, std::uint16_t port)
{
    return host + " port " + std::to_string(port);
}

} // namespace

LabDialer::LabDialer(const LabNetwork &network) : m_network(network) { }

const LabTailnet *LabDialer::tailnetOf(const std::string &profile) const
{
    const LabProfile *known = findNamed(m_network.profiles, profile);
    return known ? findNamed(m_network.tailnets, known->tailnet) : nullptr;
}

bool LabDialer::isNode(const std::string &tailnet, const std::string &hostname) const
{
    return std::ranges::any_of(*m_published, [&](const auto &published) {
        return std::get<0>(published.first) == tailnet && std::get<1>(published.first) == hostname;
    });
}

std::string LabDialer::hostProblem(const std::string &profile, const std::string &host) const
{
    const LabTailnet *tailnet = tailnetOf(profile);
    if (!tailnet)
        return unknownLabProfile(profile);
    const std::string label = labelOf(host, tailnet->suffix);
    if (findNamed(tailnet->hosts, label) || isNode(findNamed(m_network.profiles, profile)->tailnet, label))
        return "";
    return "The tailnet of profile \"" + profile + "\" has no host \"" + host + "\".";
}

std::vector<std::string> LabDialer::resolve(const std::string &profile, const std::string &host) const
{
    if (!hostProblem(profile, host).empty())
        return {};
    const LabTailnet &tailnet = *tailnetOf(profile);
    const LabHost *known = findNamed(tailnet.hosts, labelOf(host, tailnet.suffix));
    return {known && known->kind == LabHost::Kind::address ? known->address : "127.0.0.1"};
}

/// Where on loopback that host is. Throws NetworkProblem.
LabDialer::Endpoint LabDialer::endpointOf(
    const std::string &profile, const std::string &host, std::uint16_t port, const asio::any_io_executor &executor)
{
    if (const std::string problem = hostProblem(profile, host); !problem.empty())
        throw NetworkProblem(problem);
    const LabTailnet &tailnet = *tailnetOf(profile);
    const std::string label = labelOf(host, tailnet.suffix);
    if (const LabHost *known = findNamed(tailnet.hosts, label)) {
        if (known->kind != LabHost::Kind::address)
            return m_hosts.endpointOf(known->kind, port, executor);
        return {asio::ip::make_address(known->address), known->port == 0 ? port : known->port};
    }
    const auto published = m_published->find({findNamed(m_network.profiles, profile)->tailnet, label, port});
    if (published == m_published->end())
        throw NetworkProblem(at(host, port) + " refused the connection: the node publishes nothing there.");
    if (findNamed(m_network.profiles, published->second.profile)->policy.admits == LabPolicy::Admits::nobody)
        throw NetworkProblem(at(host, port) + " refused the connection: the policy of the tailnet admits no device.");
    return published->second.endpoint;
}

asio::awaitable<tcp::socket> LabDialer::dial(std::string profile, std::string host, std::uint16_t port)
{
    const auto executor = co_await asio::this_coro::executor;
    tcp::socket socket(executor);
    const auto [failure] = co_await socket.async_connect(endpointOf(profile, host, port, executor), asTuple);
    if (failure == asio::error::connection_refused)
        throw NetworkProblem(at(host, port) + " refused the connection.");
    if (failure)
        throw NetworkProblem(at(host, port) + " cannot be reached: " + failure.message() + ".");
    boost::system::error_code ignored;
    socket.set_option(tcp::no_delay(true), ignored);
    co_return socket;
}

NodePort LabDialer::openPort(
    const asio::any_io_executor &executor, const std::string &profile, const std::string &hostname, std::uint16_t port)
{
    const LabProfile *known = findNamed(m_network.profiles, profile);
    if (!known)
        throw NetworkProblem(hostProblem(profile, hostname));
    const PortKey key{known->tailnet, lowered(hostname), port};
    if (m_published->contains(key))
        throw NetworkProblem("Port " + std::to_string(port) + " of the node is already published.");
    tcp::acceptor acceptor = openListener(executor,
        known->nodeAddress.empty() ? Endpoint(asio::ip::address_v4::loopback(), 0)
                                   : Endpoint(asio::ip::make_address(known->nodeAddress), port));
    m_published->emplace(key, Published{acceptor.local_endpoint(), profile});
    std::shared_ptr<void> lease(nullptr, [published = m_published, key](void *) { published->erase(key); });
    return {std::move(acceptor), std::move(lease)};
}

void LabDialer::stop()
{
    m_hosts.stop();
}

} // namespace veranox
