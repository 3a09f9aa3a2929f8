#include "Service/Nodes/NoNodeEngine.h"

namespace veranox {

namespace {

const std::string noEngine = "No network engine: start the service with --lab demo or --lab FILE, or set VERANOX_LAB, "
                             "to run a simulated network.";

} // namespace

NoNodeEngine::NoNodeEngine(WallTime started) : m_started(started) { }

void NoNodeEngine::setChanged(std::function<void()>) { }

NodeStatus NoNodeEngine::profileStatus(const std::string &) const
{
    // "Stopped", as a node that waits to be known ("NoState", "Starting") would look as if it came up soon.
    return {.ok = false, .backendState = "Stopped", .raw = "", .error = noEngine, .since = m_started};
}

boost::asio::awaitable<NodeAction> NoNodeEngine::login(std::string)
{
    co_return NodeAction{.ok = false, .output = "", .error = noEngine, .authURL = ""};
}

boost::asio::awaitable<NodeAction> NoNodeEngine::logout(std::string)
{
    co_return NodeAction{.ok = false, .output = "", .error = noEngine, .authURL = ""};
}

std::optional<std::chrono::steady_clock::time_point> NoNodeEngine::nextChange() const
{
    return std::nullopt;
}

std::string NoNodeEngine::hostProblem(const std::string &, const std::string &) const
{
    return noEngine;
}

boost::asio::awaitable<std::vector<std::string>> NoNodeEngine::resolve(std::string, std::string)
{
    co_return std::vector<std::string>{};
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

std::shared_ptr<boost::asio::ssl::context> NoNodeEngine::certificate(const std::string &)
{
    throw NetworkProblem(noEngine);
}

void NoNodeEngine::stop() { }

} // namespace veranox
