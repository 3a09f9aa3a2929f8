#include "Service/Control/ControlServer.h"

#include "Service/Control/ControlSession.h"
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <new>
#include <random>

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
constexpr std::chrono::milliseconds pauseAfterFailedAccept{100};

} // namespace

ControlServer::ControlServer(asio::io_context &context, asio::ip::tcp::acceptor acceptor, ControlApi &api,
    const ConfigStore &config, Log &log, ControlLimits limits, std::function<void()> onShutdown)
    : m_context(context),
      m_acceptor(std::move(acceptor)),
      m_timer(context),
      m_api(api),
      m_config(config),
      m_log(log),
      m_limits(limits),
      m_onShutdown(std::move(onShutdown)),
      m_requestPrefix(std::to_string(std::random_device{}()))
{
}

ControlServer::~ControlServer() = default;

void ControlServer::start()
{
    asio::co_spawn(m_context, acceptConnections(), asio::detached);
}

asio::awaitable<void> ControlServer::acceptConnections()
{
    while (!m_isStopping) {
        auto [failure, socket] = co_await m_acceptor.async_accept(asTuple);
        const bool hasBegun = !failure && begin(std::move(socket));
        if (!hasBegun && !m_isStopping) {
            m_timer.expires_after(pauseAfterFailedAccept);
            co_await m_timer.async_wait(asTuple);
        }
    }
}

/// False when there was no memory for it, so that a pause is in place.
bool ControlServer::begin(asio::ip::tcp::socket socket)
{
    std::shared_ptr<ControlSession> session;
    try {
        if (m_isStopping || !makeRoom())
            return true;
        boost::system::error_code ignored;
        socket.set_option(asio::ip::tcp::no_delay(true), ignored);
        session = std::make_shared<ControlSession>(std::move(socket), *this);
        m_sessions.insert(session.get());
        session->start();
        return true;
    } catch (const std::bad_alloc &) {
        m_sessions.erase(session.get());
        return false;
    }
}

/// Pushes out a connection that keeps us waiting, so that a crowd of such locks nobody out: first one that does not
/// take its answer, which a client in good order does at once, then one that owes us a request; the longest waiting of
/// each.
bool ControlServer::makeRoom()
{
    if (m_sessions.size() < m_limits.connections)
        return true;
    const auto byMerit = [](const ControlSession *session) {
        return std::pair(session->isWaiting(), session->waitingSince());
    };
    ControlSession *longest = nullptr;
    for (ControlSession *session : m_sessions)
        if (session->dependsOnClient() && (longest == nullptr || byMerit(session) < byMerit(longest)))
            longest = session;
    if (longest == nullptr)
        return false;
    m_sessions.erase(longest);
    longest->close();
    m_log.write(LogLevel::debug, "connection_pushed_out", "a waiting connection made room for a new one",
        {{"connections", m_limits.connections}});
    return true;
}

void ControlServer::stop()
{
    if (m_isStopping)
        return;
    m_isStopping = true;
    boost::system::error_code ignored;
    m_acceptor.close(ignored);
    m_timer.cancel();
    for (ControlSession *session : std::set<ControlSession *>(m_sessions))
        if (session->isWaiting())
            session->close();
    asio::co_spawn(m_context, closeLaggards(), asio::detached);
}

asio::awaitable<void> ControlServer::closeLaggards()
{
    if (m_sessions.empty())
        co_return;
    m_timer.expires_after(m_limits.stop);
    const auto [cancelled] = co_await m_timer.async_wait(asTuple);
    if (cancelled)
        co_return;
    for (ControlSession *session : std::set<ControlSession *>(m_sessions))
        session->close();
}

void ControlServer::sessionEnded(ControlSession &session)
{
    m_sessions.erase(&session);
    if (m_isStopping && m_sessions.empty())
        m_timer.cancel();
}

void ControlServer::requestShutdown()
{
    m_onShutdown();
}

void ControlServer::logAnswer(const ControlRequest &request, unsigned status, std::chrono::steady_clock::duration took)
{
    constexpr unsigned firstFailure = 400;
    const bool isRefused = status >= firstFailure;
    const LogLevel level = isRefused ? LogLevel::warn : request.isRead() ? LogLevel::debug : LogLevel::info;
    const std::uint64_t number = ++m_requests;
    if (!m_log.writes(level) || (isRefused && !m_refusals.admits(std::chrono::steady_clock::now())))
        return;
    LogFields fields{{"operation", request.method + " " + request.target.substr(0, request.target.find('?'))},
        {"outcome", isRefused ? "refused" : "ok"}, {"http_status", status},
        {"duration_ms", std::chrono::duration_cast<std::chrono::milliseconds>(took).count()},
        {"request_id", m_requestPrefix + "-" + std::to_string(number)}, {"config_generation", m_config.generation()}};
    if (const std::optional<std::string> correlation = logIdentifier(request.correlationID))
        fields.emplace_back("correlation_id", *correlation);
    if (const std::optional<std::string> attempt = logIdentifier(request.attempt))
        fields.emplace_back("attempt", *attempt);
    if (const std::uint64_t heldBack = m_refusals.takeHeldBack())
        fields.emplace_back("refusals_not_logged", heldBack);
    m_log.write(level, "control_request", "control request answered", std::move(fields));
}

} // namespace veranox
