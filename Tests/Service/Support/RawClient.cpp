#include "Tests/Service/Support/RawClient.h"

#include <boost/asio/write.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <sys/socket.h>
#include <sys/time.h>

namespace veranox::test {

namespace asio = boost::asio;
namespace http = boost::beast::http;

RawClient::RawClient(std::uint16_t port, const std::string &host) : m_port(port)
{
    m_socket.connect({asio::ip::make_address(host), port});
    const timeval patience{20, 0};
    for (const int direction : {SO_RCVTIMEO, SO_SNDTIMEO})
        if (::setsockopt(m_socket.native_handle(), SOL_SOCKET, direction, &patience, sizeof patience) != 0)
            throw std::runtime_error("no time-out on the socket");
}

bool RawClient::send(std::string_view bytes)
{
    boost::system::error_code failure;
    asio::write(m_socket, asio::buffer(bytes), failure);
    return !failure;
}

void RawClient::finishSending()
{
    m_socket.shutdown(asio::ip::tcp::socket::shutdown_send);
}

RawClient::Answer RawClient::receive()
{
    Answer answer;
    http::read(m_socket, m_buffer, answer);
    return answer;
}

RawClient::Answer RawClient::receiveHeader()
{
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
    const std::size_t count = m_buffer.size() > 0 ? 1 : m_socket.read_some(asio::buffer(&next, 1), failure);
    return count == 0 && (failure == asio::error::eof || failure == asio::error::connection_reset);
}

std::string RawClient::request(std::string_view method, std::string_view path, std::string_view headers) const
{
    return std::string(method) + " " + std::string(path) + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(m_port)
        + "\r\n" + std::string(headers) + "\r\n";
}

} // namespace veranox::test
