#include "Tests/Support/ScriptedServer.h"
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

// ---- Gate
void Gate::open(int times)
{
    {
        const std::lock_guard lock(m_mutex);
        m_open += times;
    }
    m_opened.notify_all();
}

bool Gate::pass(std::stop_token stop)
{
    std::unique_lock lock(m_mutex);
    if (!m_opened.wait(lock, stop, [this] { return m_open > 0; }))
        return false;
    --m_open;
    return true;
}

// ---- ServerConnection
ServerConnection::ServerConnection(int socket, std::stop_token stop) : m_socket(socket), m_stop(std::move(stop)) { }

ServerConnection::~ServerConnection()
{
    ::close(m_socket);
}

bool ServerConnection::send(const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const auto sent =
            ::send(m_socket, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        done += sent;
    }
    return true;
}

bool ServerConnection::reply(int status, const QByteArray &body, const QByteArray &headers)
{
    return send("HTTP/1.1 " + QByteArray::number(status) + " Text\r\n" + headers
        + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
}

void ServerConnection::waitUntilClientCloses()
{
    char rest = 0;
    while (::recv(m_socket, &rest, 1, 0) > 0) { }
}

QByteArray ServerConnection::receiveUntil(const std::function<bool(const QByteArray &)> &complete)
{
    QByteArray bytes;
    char piece[4096];
    while (!complete(bytes)) {
        const auto count = ::recv(m_socket, piece, sizeof piece, 0);
        if (count <= 0)
            return {};
        bytes.append(piece, count);
    }
    return bytes;
}

std::optional<ReceivedRequest> ServerConnection::receive(Part part)
{
    const auto bodySize = [](const QByteArray &head) {
        const auto at = head.toLower().indexOf("\r\ncontent-length:");
        return at < 0 ? 0 : head.mid(at + 17).split('\r').first().trimmed().toLongLong();
    };
    const QByteArray bytes = receiveUntil([&](const QByteArray &all) {
        const auto end = all.indexOf("\r\n\r\n");
        return end >= 0 && (part == Part::head || all.size() >= end + 4 + bodySize(all.left(end)));
    });
    if (bytes.isEmpty())
        return std::nullopt;
    const auto end = bytes.indexOf("\r\n\r\n");
    QByteArrayList lines = bytes.left(end).split('\n');
    const QByteArrayList words = lines.takeFirst().trimmed().split(' ');
    ReceivedRequest request{
        .method = words.value(0), .target = words.value(1), .headers = {}, .body = bytes.mid(end + 4)};
    EXPECT_EQ(words.value(2), "HTTP/1.1");
    for (const QByteArray &line : lines) {
        const auto colon = line.indexOf(':');
        const QByteArray name = line.left(colon).toLower();
        EXPECT_FALSE(request.headers.contains(name)) << "twice: " << name.toStdString();
        request.headers.insert(name, line.mid(colon + 1).trimmed());
    }
    return request;
}

// ---- behaviours
Behaviour reply(int status, const QByteArray &body, const QByteArray &headers)
{
    return [=](ServerConnection &connection) { connection.reply(status, body, headers); };
}

Behaviour replyAfter(std::shared_ptr<Gate> gate, int status, const QByteArray &body)
{
    return [=](ServerConnection &connection) {
        if (gate->pass(connection.stopToken()))
            connection.reply(status, body);
    };
}

// ---- ScriptedServer
ScriptedServer::ScriptedServer() : m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    if (::bind(m_listener, generic, size) != 0 || ::listen(m_listener, 256) != 0
        || ::getsockname(m_listener, generic, &size) != 0)
        qFatal("no loopback port for the test's server");
    m_port = ntohs(address.sin_port);
    m_acceptor = std::jthread([this](const std::stop_token &stop) { acceptConnections(stop); });
}

ScriptedServer::~ScriptedServer()
{
    m_acceptor.request_stop();
    m_acceptor.join();
    m_connections.clear(); // stops and joins each
    ::close(m_listener);
    for (const auto &[requestLine, behaviour] : m_expected)
        ADD_FAILURE() << "never came: " << requestLine.toStdString();
}

QUrl ScriptedServer::url() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(m_port));
}

void ScriptedServer::expect(const QByteArray &requestLine, Behaviour behaviour)
{
    const std::lock_guard lock(m_mutex);
    m_expected.emplaceBack(requestLine, std::move(behaviour));
}

QList<ReceivedRequest> ScriptedServer::received() const
{
    const std::lock_guard lock(m_mutex);
    return m_received;
}

void ScriptedServer::acceptConnections(const std::stop_token &stop)
{
    const std::stop_callback wake(stop, [this] { ::shutdown(m_listener, SHUT_RDWR); });
    for (;;) {
        const int socket = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            return;
        m_connections.emplace_back([this, socket](std::stop_token s) { serve(socket, std::move(s)); });
    }
}

void ScriptedServer::serve(int socket, std::stop_token stop)
{
    {
        ServerConnection connection(socket, stop);
        const std::stop_callback wake(stop, [socket] { ::shutdown(socket, SHUT_RDWR); });
        if (const auto request = connection.receive(m_awaited)) {
            checkRules(*request);
            const Behaviour behaviour = take(request->method + ' ' + request->target);
            {
                const std::lock_guard lock(m_mutex);
                m_received.append(*request);
            }
            behaviour(connection);
        }
    }
    ++m_closed;
}

Behaviour ScriptedServer::take(const QByteArray &requestLine)
{
    const std::lock_guard lock(m_mutex);
    for (qsizetype i = 0; i < m_expected.size(); ++i) {
        if (m_expected.at(i).first == requestLine)
            return m_expected.takeAt(i).second;
    }
    ADD_FAILURE() << "not expected: " << requestLine.toStdString();
    return reply(500, "{\"error\":\"not expected\"}");
}

void ScriptedServer::checkRules(const ReceivedRequest &request)
{
    const bool readOnly = request.method == "GET" || request.method == "HEAD";
    const auto &headers = request.headers;
    for (const char *const needed : {"host", "x-veranox-session-id", "x-correlation-id", "x-veranox-attempt"})
        EXPECT_FALSE(headers.value(needed).isEmpty()) << "missing: " << needed;
    for (const char *const foreign : {"cookie", "upgrade", "http2-settings", "if-none-match", "if-modified-since",
             "authorization", "proxy-connection", "expect"})
        EXPECT_FALSE(headers.contains(foreign)) << "must not be sent: " << foreign;
    EXPECT_EQ(headers.value("accept-encoding"), "identity");
    EXPECT_FALSE(readOnly && headers.contains("x-veranox-token")) << "a read carries the token";
    EXPECT_EQ(headers.contains("content-type"), headers.value("content-length").toLongLong() > 0);
}
