// A loopback HTTP server that plays a script: it answers exactly the requests that the test announced, each once, and
// holds every request to the rules that all requests of the application obey. Whatever else comes fails the test.
#pragma once
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QUrl>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

struct ReceivedRequest {
    QByteArray method;
    QByteArray target;
    QHash<QByteArray, QByteArray> headers; // names in lower case
    QByteArray body;
};

// Holds a server's thread until the test lets it go on, once for each open().
class Gate {
public:
    void open(int times = 1);
    bool pass(std::stop_token stop); // false when the server is being stopped

private:
    std::mutex m_mutex;
    std::condition_variable_any m_opened;
    int m_open = 0;
};

// One accepted connection, in a thread of its own.
class ServerConnection {
public:
    ServerConnection(int socket, std::stop_token stop);
    ~ServerConnection();
    ServerConnection(const ServerConnection &) = delete;
    ServerConnection &operator=(const ServerConnection &) = delete;

    bool send(const QByteArray &bytes); // false when the client is gone
    bool reply(int status, const QByteArray &body, const QByteArray &headers = {}); // each header ends in "\r\n"
    void waitUntilClientCloses();
    std::stop_token stopToken() const { return m_stop; }

    enum class Part { head, whole };
    std::optional<ReceivedRequest> receive(Part part); // nothing when the client closes before the end of that part

private:
    QByteArray receiveUntil(const std::function<bool(const QByteArray &)> &complete);
    const int m_socket;
    const std::stop_token m_stop;
};

using Behaviour = std::function<void(ServerConnection &)>;
Behaviour reply(int status, const QByteArray &body, const QByteArray &headers = {});
// The same, when the gate opens.
Behaviour replyAfter(std::shared_ptr<Gate> gate, int status, const QByteArray &body);

class ScriptedServer {
public:
    ScriptedServer();
    ~ScriptedServer(); // fails the test when an announced request did not come
    ScriptedServer(const ScriptedServer &) = delete;
    ScriptedServer &operator=(const ScriptedServer &) = delete;

    QUrl url() const;

    // The request line's first two words, such as "GET /api/profiles". The same line may be announced again, for the
    // next request of that kind.
    void expect(const QByteArray &requestLine, Behaviour behaviour);

    // From now on a request is answered when its head has come, and the rest of its body is never read.
    void answerBeforeTheBody() { m_awaited = ServerConnection::Part::head; }

    QList<ReceivedRequest> received() const;
    int connectionsClosed() const { return m_closed; } // behaviours that came to their end

private:
    void acceptConnections(const std::stop_token &stop);
    void serve(int socket, std::stop_token stop);
    Behaviour take(const QByteArray &requestLine);
    static void checkRules(const ReceivedRequest &request);

    int m_listener = -1;
    quint16 m_port = 0;
    mutable std::mutex m_mutex;
    QList<std::pair<QByteArray, Behaviour>> m_expected;
    QList<ReceivedRequest> m_received;
    std::atomic<int> m_closed = 0;
    std::atomic<ServerConnection::Part> m_awaited = ServerConnection::Part::whole;
    std::list<std::jthread> m_connections; // touched by the accepting thread, then by the destructor
    std::jthread m_acceptor;
};
