#pragma once
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/string_body.hpp>
#include <cstdint>
#include <string>
#include <string_view>

namespace veranox::test {

/// A connection to the service that sends whatever bytes a test likes. Nothing waits longer than 20 seconds: then the
/// connection counts as dead.
class RawClient {
public:
    using Answer = boost::beast::http::response<boost::beast::http::string_body>;

    explicit RawClient(std::uint16_t port, const std::string &host = "127.0.0.1");

    /// False once the other side has closed, or takes nothing any more.
    bool send(std::string_view bytes);
    /// Lets the other side know that nothing more comes.
    void finishSending();
    /// One answer. Throws boost::system::system_error when none comes.
    Answer receive();
    /// The same for the answer to a HEAD request.
    Answer receiveHeader();
    /// Sends and receives.
    Answer exchange(std::string_view bytes);
    /// True when the other side closed the connection without saying anything more.
    bool isClosedByServer();

    /// A request with the right Host and the given lines ("Name: value\r\n") besides.
    std::string request(std::string_view method, std::string_view path, std::string_view headers = "") const;

private:
    /// Waits until there is something to read, the end included. False when nothing comes for 20 seconds.
    bool awaitBytes();

    std::uint16_t m_port;
    boost::asio::io_context m_context;
    boost::asio::ip::tcp::socket m_socket{m_context};
    boost::beast::flat_buffer m_buffer;
};

} // namespace veranox::test
