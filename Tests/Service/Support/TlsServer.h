#pragma once
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <cstdint>
#include <string>
#include <thread>

namespace veranox::test {

/// A web server behind TLS on a thread of its own, with a certificate of its own making for one host. Serves one
/// connection after the other, whatever each asks for.
class TlsServer {
public:
    /// How it ends a connection once it has answered.
    enum class End { farewell, abrupt };

    explicit TlsServer(const std::string &host, std::string answer, End end = End::farewell);
    TlsServer(const TlsServer &) = delete;
    TlsServer &operator=(const TlsServer &) = delete;
    ~TlsServer();

    std::uint16_t port() const { return m_port; }
    /// Its certificate as a file holds it, for whoever is to trust it.
    const std::string &certificate() const { return m_certificate; }

    /// Ends it; after that what it has seen can be read.
    void end();
    const std::string &askedName() const { return m_askedName; } // of the last client that shook hands
    const std::string &request() const { return m_request; }

private:
    void serve();
    void serveOne(boost::asio::ip::tcp::socket socket);

    boost::asio::ssl::context m_tls;
    std::string m_certificate;
    std::string m_answer;
    End m_end;
    boost::asio::io_context m_context;
    boost::asio::ip::tcp::acceptor m_acceptor;
    std::uint16_t m_port;
    std::string m_askedName;
    std::string m_request;
    std::thread m_thread;
};

} // namespace veranox::test
