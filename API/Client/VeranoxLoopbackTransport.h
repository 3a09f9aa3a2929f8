#pragma once
#include <QByteArray>
#include <QUrl>
#include <expected>
#include <functional>
#include <memory>
#include <stop_token>
#include <utility>
#include <vector>

struct VeranoxHTTPRequest {
    QByteArray method;
    QByteArray target; // path and query, percent-encoded
    std::vector<std::pair<QByteArray, QByteArray>> headers = {}; // beside those of the connection; free of line ends
    QByteArray body = {};
};

struct VeranoxHTTPResponse {
    int status = 0;
    QByteArray body = {};
};

enum class VeranoxTransportFailure {
    unreachable, // nothing listens, the connection broke, or what came is not HTTP
    tooLarge, // headers or body beyond the limits below
};

// HTTP/1.1 to a service of this computer, in one thread of its own that sleeps while nothing is on its way.
//
// Each exchange has a fresh connection, so that none can fail, or be sent twice, because of a connection that the
// service closed meanwhile. An answer counts whenever it comes, also before the request is sent whole. Nothing stands
// between: no proxy, redirect, cookie, cache, decompression or upgrade. There is no time limit here; the caller stops
// what takes too long.
class VeranoxLoopbackTransport {
public:
    static constexpr qsizetype maximumBodySize = 64 * 1024 * 1024; // bytes; far above any document of the service
    static constexpr qsizetype maximumHeaderSize = 64 * 1024; // bytes, all header lines together

    using Result = std::expected<VeranoxHTTPResponse, VeranoxTransportFailure>;
    using Handler = std::function<void(Result)>; // called in the transport's thread; must not throw

    // `baseURL` is http://ADDRESS:PORT with an IP address; anything else ends the process.
    explicit VeranoxLoopbackTransport(const QUrl &baseURL);
    // Drops what is on its way: its handlers are destroyed without a call.
    ~VeranoxLoopbackTransport();
    VeranoxLoopbackTransport(const VeranoxLoopbackTransport &) = delete;
    VeranoxLoopbackTransport &operator=(const VeranoxLoopbackTransport &) = delete;

    // Any thread. A stop closes the connection at once; the handler is then called with Unreachable.
    void send(VeranoxHTTPRequest request, std::stop_token stop, Handler handler);

    // Any thread. Runs work in the transport's thread; it must not throw, and holds up every exchange meanwhile.
    void run(std::function<void()> work);

private:
    class Reactor;
    std::unique_ptr<Reactor> m_reactor;
};
