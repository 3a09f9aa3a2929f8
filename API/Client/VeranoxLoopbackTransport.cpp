#include "API/Client/VeranoxLoopbackTransport.h"
#include "API/Client/VeranoxByteArrayBody.h"
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <optional>
#include <thread>

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::system::error_code;

namespace {

using Request = http::request<VeranoxByteArrayBody>;
using Parser = http::response_parser<VeranoxByteArrayBody>;
constexpr auto answer = asio::as_tuple(asio::use_awaitable); // errors as values

tcp::endpoint endpointOf(const QUrl &baseURL)
{
    error_code error;
    const auto address = asio::ip::make_address(baseURL.host().toStdString(), error);
    if (error || baseURL.scheme() != QLatin1StringView("http"))
        qFatal("the control API needs http and an IP address, not %s", qPrintable(baseURL.toString()));
    return {address, static_cast<asio::ip::port_type>(baseURL.port(80))};
}

Request makeMessage(VeranoxHTTPRequest request, const QByteArray &host)
{
    Request message;
    message.version(11);
    message.method_string(request.method.toStdString());
    message.target(request.target.toStdString());
    message.set(http::field::host, host.toStdString());
    message.set(http::field::connection, "close");
    message.set(http::field::accept, "application/json");
    message.set(http::field::accept_encoding, "identity");
    for (const auto &[name, value] : request.headers)
        message.insert(name.toStdString(), value.toStdString());
    message.body() = std::move(request.body);
    message.prepare_payload();
    return message;
}

VeranoxTransportFailure failureOf(const error_code &error)
{
    const bool beyondLimit =
        error == http::error::body_limit || error == http::error::header_limit || error == http::error::buffer_overflow;
    return beyondLimit ? VeranoxTransportFailure::tooLarge : VeranoxTransportFailure::unreachable;
}

// Reads past the interim answers (1xx) that HTTP allows before the one that counts.
asio::awaitable<error_code> readFinalAnswer(tcp::socket &socket, std::optional<Parser> &parser, bool hasBody)
{
    beast::flat_buffer buffer(2 * VeranoxLoopbackTransport::maximumHeaderSize);
    error_code error;
    do {
        parser.emplace();
        parser->header_limit(VeranoxLoopbackTransport::maximumHeaderSize);
        parser->body_limit(VeranoxLoopbackTransport::maximumBodySize);
        parser->skip(!hasBody);
        std::tie(error, std::ignore) = co_await http::async_read(socket, buffer, *parser, answer);
    } while (!error && parser->get().result_int() / 100 == 1);
    co_return error;
}

struct Exchange {
    tcp::socket socket;
    Request message;
};

// That it failed needs no word: what breaks the connection ends the reading too, behind the answer that came before.
asio::awaitable<void> writeRequest(std::shared_ptr<Exchange> exchange)
{
    co_await http::async_write(exchange->socket, exchange->message, answer);
}

// Writes and reads side by side: a service may refuse a request before it has come whole, and take no more of it.
asio::awaitable<VeranoxLoopbackTransport::Result> run(std::shared_ptr<Exchange> exchange, tcp::endpoint endpoint)
{
    tcp::socket &socket = exchange->socket;
    auto [connectError] = co_await socket.async_connect(endpoint, answer);
    if (connectError)
        co_return std::unexpected(failureOf(connectError));
    asio::co_spawn(socket.get_executor(), writeRequest(exchange), asio::detached);
    std::optional<Parser> parser;
    const error_code readError =
        co_await readFinalAnswer(socket, parser, exchange->message.method() != http::verb::head);
    error_code ignored;
    socket.close(ignored); // what is not yet written will not be wanted
    if (readError)
        co_return std::unexpected(failureOf(readError));
    co_return VeranoxHTTPResponse{
        .status = static_cast<int>(parser->get().result_int()), .body = std::move(parser->get().body())};
}

// The connection of one exchange, closed from any thread by a stop.
asio::awaitable<void> stoppableExchange(
    tcp::endpoint endpoint, Request message, std::stop_token stop, VeranoxLoopbackTransport::Handler handler)
{
    const auto executor = co_await asio::this_coro::executor;
    const auto exchange = std::make_shared<Exchange>(tcp::socket(executor), std::move(message));
    const auto closeInItsThread = [executor, weak = std::weak_ptr(exchange)] {
        asio::post(executor, [weak] {
            error_code ignored;
            if (const auto live = weak.lock())
                live->socket.close(ignored);
        });
    };
    const std::stop_callback onStop(stop, closeInItsThread);
    handler(co_await run(exchange, endpoint));
}

} // namespace

class VeranoxLoopbackTransport::Reactor {
public:
    explicit Reactor(const QUrl &baseURL)
        : m_endpoint(endpointOf(baseURL)),
          m_host(baseURL.authority(QUrl::FullyEncoded).toLatin1()),
          m_thread([this] { m_context.run(); })
    {
    }
    ~Reactor()
    {
        m_context.stop();
        m_thread.join();
    }
    Reactor(const Reactor &) = delete;
    Reactor &operator=(const Reactor &) = delete;

    void send(VeranoxHTTPRequest request, std::stop_token stop, Handler handler)
    {
        asio::co_spawn(m_context,
            stoppableExchange(m_endpoint, makeMessage(std::move(request), m_host), std::move(stop), std::move(handler)),
            asio::detached);
    }
    void run(std::function<void()> work) { asio::post(m_context, std::move(work)); }

private:
    const tcp::endpoint m_endpoint;
    const QByteArray m_host;
    asio::io_context m_context{1}; // one thread runs it
    const asio::executor_work_guard<asio::io_context::executor_type> m_work = asio::make_work_guard(m_context);
    std::thread m_thread; // last: it uses the others
};

VeranoxLoopbackTransport::VeranoxLoopbackTransport(const QUrl &baseURL) : m_reactor(std::make_unique<Reactor>(baseURL))
{
}

VeranoxLoopbackTransport::~VeranoxLoopbackTransport() = default;

void VeranoxLoopbackTransport::send(VeranoxHTTPRequest request, std::stop_token stop, Handler handler)
{
    m_reactor->send(std::move(request), std::move(stop), std::move(handler));
}

void VeranoxLoopbackTransport::run(std::function<void()> work)
{
    m_reactor->run(std::move(work));
}
