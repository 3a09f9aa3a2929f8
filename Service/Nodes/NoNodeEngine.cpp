#include "Service/Nodes/NoNodeEngine.h"

namespace veranox {

namespace {

const std::string noEngine = "No network engine: start the service with --lab demo or --lab FILE, or set VERANOX_LAB, "
                             "to run a simulated network.";

} // namespace

NoNodeEngine::NoNodeEngine(WallTime started) : m_started(started) { }

NodeStatus NoNodeEngine::profileStatus(const std::string &) const
{
    // "Stopped", as a node that waits to be known ("NoState", "Starting") would look as if it came up soon.
    return {.ok = false, .backendState = "Stopped", .raw = "", .error = noEngine, .since = m_started};
}

NodeAction NoNodeEngine::login(const std::string &)
{
    return {.ok = false, .output = "", .error = noEngine, .authURL = ""};
}

NodeAction NoNodeEngine::logout(const std::string &)
{
    return {.ok = false, .output = "", .error = noEngine, .authURL = ""};
}

std::optional<std::chrono::steady_clock::time_point> NoNodeEngine::nextChange() const
{
    return std::nullopt;
}

std::string NoNodeEngine::hostProblem(const std::string &, const std::string &) const
{
    return noEngine;
}

std::vector<std::string> NoNodeEngine::resolve(const std::string &, const std::string &) const
{
    return {};
}

NodeNames NoNodeEngine::nodeNames(const std::string &, const std::string &hostname) const
{
    return {.hostName = hostname, .dnsName = "", .addresses = {}};
}

boost::asio::awaitable<boost::asio::ip::tcp::socket> NoNodeEngine::dial(std::string, std::string, std::uint16_t)
{
    co_await boost::asio::this_coro::executor;
    throw NetworkProblem(noEngine);
}

NodePort NoNodeEngine::openPort(
    const boost::asio::any_io_executor &, const std::string &, const std::string &, std::uint16_t)
{
    throw NetworkProblem(noEngine);
}

void NoNodeEngine::stop() { }

} // namespace veranox
