#include "Tests/Service/Support/RawClient.h"

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace veranox::test {

namespace asio = boost::asio;
namespace http = boost::beast::http;

RawClient::RawClient(std::uint16_t port, const std::string &host) : m_port(port)
{
    m_socket.connect({asio::ip::make_address(host), port});
    const timeval patience{20, 0};
    if (::setsockopt(m_socket.native_handle(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience) != 0)
        throw std::runtime_error("no time-out on the socket");
}

bool RawClient::send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::send(m_socket.native_handle(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void RawClient::finishSending()
{
    m_socket.shutdown(asio::ip::tcp::socket::shutdown_send);
}

// A limit of the socket's own is none to the library, which waits on when it has passed.
bool RawClient::awaitBytes()
{
    constexpr int patience = 20000;
    pollfd ready{m_socket.native_handle(), POLLIN, 0};
    return m_buffer.size() > 0 || ::poll(&ready, 1, patience) > 0;
}

RawClient::Answer RawClient::receive()
{
    if (!awaitBytes())
        throw std::runtime_error("the service says nothing");
    Answer answer;
    http::read(m_socket, m_buffer, answer);
    return answer;
}

RawClient::Answer RawClient::receiveHeader()
{
    if (!awaitBytes())
        throw std::runtime_error("the service says nothing");
    http::response_parser<http::string_body> parser;
    parser.skip(true);
    http::read(m_socket, m_buffer, parser);
    return parser.release();
}

RawClient::Answer RawClient::exchange(std::string_view bytes)
{
    send(bytes);
    return receive();
}

bool RawClient::isClosedByServer()
{
    char next = 0;
    boost::system::error_code failure;
    if (!awaitBytes())
        return false;
    const std::size_t count = m_buffer.size() > 0 ? 1 : m_socket.read_some(asio::buffer(&next, 1), failure);
    return count == 0 && (failure == asio::error::eof || failure == asio::error::connection_reset);
}

std::string RawClient::request(std::string_view method, std::string_view path, std::string_view headers) const
{
    return std::string(method) + " " + std::string(path) + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(m_port)
        + "\r\n" + std::string(headers) + "\r\n";
}

} // namespace veranox::test
