#include "Service/Nodes/Lab/LabHosts.h"

#include "Service/Net/LabCertificate.h"
#include "Service/Net/TlsEnd.h"
#include "Service/Nodes/Lab/LabHostServices.h"
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <set>
#include <utility>

namespace veranox {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);
constexpr std::chrono::milliseconds pauseAfterFailedAccept{100};

asio::awaitable<void> serveAs(LabHost::Kind kind, LabConnection connection)
{
    if (kind == LabHost::Kind::site)
        return serveSite(std::move(connection));
    return kind == LabHost::Kind::echo ? serveEcho(std::move(connection)) : serveBlackhole(std::move(connection));
}

} // namespace

class LabHosts::Server : public std::enable_shared_from_this<Server> {
public:
    Server(LabHost::Kind kind, bool isSecure, const asio::any_io_executor &executor)
        : m_kind(kind),
          m_tls(isSecure ? std::make_shared<asio::ssl::context>(selfSignedContext("site.lab")) : nullptr),
          m_acceptor(executor, tcp::endpoint(asio::ip::address_v4::loopback(), 0)),
          m_pause(executor)
    {
    }

    tcp::endpoint endpoint() const { return m_acceptor.local_endpoint(); }

    static asio::awaitable<void> run(std::shared_ptr<Server> self)
    {
        while (self->m_acceptor.is_open()) {
            auto [failure, socket] = co_await self->m_acceptor.async_accept(asTuple);
            if (failure && self->m_acceptor.is_open()) {
                self->m_pause.expires_after(pauseAfterFailedAccept);
                co_await self->m_pause.async_wait(asTuple);
            }
            if (failure)
                continue;
            const auto connection = std::make_shared<StreamSocket>(std::move(socket));
            self->m_connections.insert(connection);
            asio::co_spawn(self->m_acceptor.get_executor(), serveOne(self, connection), asio::detached);
        }
    }

    void stop()
    {
        boost::system::error_code ignored;
        m_acceptor.close(ignored);
        m_pause.cancel();
        for (const LabConnection &connection : m_connections)
            connection->close(ignored);
    }

private:
    static asio::awaitable<void> serveOne(std::shared_ptr<Server> self, LabConnection connection)
    {
        if (self->m_tls)
            *connection = co_await endTls(std::move(*connection), self->m_tls);
        if (connection->is_open())
            co_await serveAs(self->m_kind, connection);
        self->m_connections.erase(connection);
        boost::system::error_code ignored;
        connection->close(ignored);
    }

    LabHost::Kind m_kind;
    std::shared_ptr<asio::ssl::context> m_tls; // of those that speak TLS
    tcp::acceptor m_acceptor;
    asio::steady_timer m_pause;
    std::set<LabConnection> m_connections;
};

LabHosts::~LabHosts()
{
    stop();
}

tcp::endpoint LabHosts::endpointOf(LabHost::Kind kind, std::uint16_t port)
{
    constexpr std::uint16_t httpsPort = 443;
    const bool isSecure = kind == LabHost::Kind::site && port == httpsPort;
    const std::scoped_lock lock(m_mutex);
    if (m_isStopped)
        throw boost::system::system_error(asio::error::operation_aborted);
    std::shared_ptr<Server> &server = m_servers[{kind, isSecure}];
    if (!server) {
        server = std::make_shared<Server>(kind, isSecure, m_context.get_executor());
        asio::co_spawn(m_context, Server::run(server), asio::detached);
    }
    if (!m_thread.joinable())
        m_thread = std::thread([this] { m_context.run(); });
    return server->endpoint();
}

void LabHosts::stop()
{
    std::thread thread;
    {
        const std::scoped_lock lock(m_mutex);
        m_isStopped = true;
        asio::post(m_context, [this, servers = std::exchange(m_servers, {})] {
            for (const auto &[key, server] : servers)
                if (server)
                    server->stop();
            m_context.stop();
        });
        thread = std::exchange(m_thread, {});
    }
    if (thread.joinable())
        thread.join();
}

} // namespace veranox
