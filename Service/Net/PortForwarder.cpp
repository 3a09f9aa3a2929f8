#include "Service/Net/PortForwarder.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <utility>

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);

/// When the system has no descriptor left, asking again at once would only burn time.
constexpr std::chrono::milliseconds pauseAfterFailedAccept{100};

StreamSocket prepared(asio::ip::tcp::socket socket)
{
    boost::system::error_code ignored;
    socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    return {std::move(socket)};
}

} // namespace

PortForwarder::PortForwarder(asio::ip::tcp::acceptor acceptor, Conduits &conduits, Dial dial, Report report)
    : m_acceptor(std::move(acceptor)),
      m_conduits(conduits),
      m_dial(std::move(dial)),
      m_report(std::move(report)),
      m_wake(m_acceptor.get_executor())
{
}

void PortForwarder::start()
{
    asio::co_spawn(m_acceptor.get_executor(), acceptConnections(shared_from_this()), asio::detached);
}

void PortForwarder::stop()
{
    m_isStopped = true;
    m_report = [](const std::string &) { };
    boost::system::error_code ignored;
    m_acceptor.close(ignored);
    m_wake.cancel();
    for (const std::shared_ptr<Relay> &relay : m_relays)
        relay->cut();
}

asio::awaitable<void> PortForwarder::acceptConnections(std::shared_ptr<PortForwarder> self)
{
    while (!self->m_isStopped) {
        co_await self->awaitRoom();
        auto [failure, socket] = co_await self->m_acceptor.async_accept(asTuple);
        if (self->m_isStopped)
            co_return;
        if (!failure) {
            ++self->m_active;
            asio::co_spawn(self->m_acceptor.get_executor(), serve(self, prepared(std::move(socket))), asio::detached);
        } else {
            self->m_wake.expires_after(pauseAfterFailedAccept);
            co_await self->m_wake.async_wait(asTuple);
        }
    }
}

asio::awaitable<void> PortForwarder::awaitRoom()
{
    while (!m_isStopped && m_active >= connectionLimit) {
        m_wake.expires_at(asio::steady_timer::time_point::max());
        co_await m_wake.async_wait(asTuple);
    }
}

asio::awaitable<void> PortForwarder::serve(std::shared_ptr<PortForwarder> self, StreamSocket client)
{
    co_await self->join(std::move(client));
    --self->m_active;
    self->m_wake.cancel();
}

asio::awaitable<void> PortForwarder::join(StreamSocket client)
{
    std::string problem;
    StreamSocket other(client.get_executor());
    try {
        if (m_admit)
            client = co_await m_admit(std::move(client));
        if (!client.is_open())
            co_return;
        other = co_await m_dial();
    } catch (const std::exception &failure) {
        problem = failure.what();
    }
    m_report(problem);
    if (!problem.empty() || m_isStopped) {
        closeWithReset(client);
        closeWithReset(other);
        co_return;
    }
    const auto relay = std::make_shared<Relay>(std::move(client), std::move(other), m_conduits);
    m_relays.insert(relay);
    co_await Relay::run(relay);
    m_relays.erase(relay);
}

} // namespace veranox
