#pragma once
#include "Service/Control/ControlAnswer.h"
#include "Service/Control/ControlRequest.h"
#include "Service/Control/RequestFraming.h"
#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/parser.hpp>
#include <chrono>
#include <memory>
#include <optional>

namespace veranox {

class ControlServer;

/// One connection: its requests one after the other, each within its limits. The server outlives it.
class ControlSession : public std::enable_shared_from_this<ControlSession> {
public:
    ControlSession(boost::asio::ip::tcp::socket socket, ControlServer &server);
    ControlSession(const ControlSession &) = delete;
    ControlSession &operator=(const ControlSession &) = delete;

    /// Runs the connection to its end.
    void start();
    /// Cuts the connection now.
    void close();

    /// True while a request is awaited, false while an answer is made or on its way.
    bool isWaiting() const { return m_stage == Stage::request; }
    /// True while only the client can bring things on: it has to send, or to take an answer.
    bool dependsOnClient() const { return m_stage != Stage::working; }
    std::chrono::steady_clock::time_point waitingSince() const { return m_waitingSince; }

private:
    enum class Stage { request, working, answer };
    using Parser = boost::beast::http::request_parser<RequestBody>;
    using ErrorCode = boost::beast::error_code;

    boost::asio::awaitable<void> run(std::shared_ptr<ControlSession> self);
    /// One request and its answer; false when the connection is to end.
    boost::asio::awaitable<bool> serveOne();
    boost::asio::awaitable<bool> awaitFirstByte();
    boost::asio::awaitable<bool> readHeader();
    boost::asio::awaitable<bool> readBody();
    /// What stands in the way of having read the body to its end, if anything does.
    boost::asio::awaitable<ErrorCode> takeBody(bool isKept);
    boost::asio::awaitable<bool> refuseBeforeBody(ControlAnswer refused);
    boost::asio::awaitable<bool> refuseUnreadable(ErrorCode failure);
    boost::asio::awaitable<bool> send(ControlAnswer answer);
    boost::asio::awaitable<void> letClientRead();
    ControlRequest currentRequest() const;
    bool asksToGoOn() const;
    void enter(Stage stage);

    boost::beast::tcp_stream m_stream;
    ControlServer &m_server;
    boost::beast::flat_buffer m_buffer;
    std::optional<Parser> m_parser;
    ControlRequest m_request;
    std::chrono::steady_clock::time_point m_waitingSince;
    std::chrono::steady_clock::time_point m_requestBegan;
    Stage m_stage = Stage::request;
    bool m_isFirstRequest = true;
    bool m_wantsMore = false; // whether the client means to ask again on this connection
};

} // namespace veranox
