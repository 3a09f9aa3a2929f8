#include "Tests/Support/HostileServer.h"

namespace hostile {

namespace {

// Sends `piece` again and again until the client has closed.
Behaviour endless(const QByteArray &opening, const QByteArray &piece, std::shared_ptr<std::atomic<qint64>> sent)
{
    return [=](ServerConnection &connection) {
        if (!connection.send(opening))
            return;
        while (connection.send(piece))
            *sent += piece.size();
    };
}

QByteArray openingOf(Framing framing, qint64 size)
{
    switch (framing) {
    case Framing::contentLength:
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(size) + "\r\n\r\n";
    case Framing::chunked:
        return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    case Framing::untilClose:
        break;
    }
    return "HTTP/1.1 200 OK\r\n\r\n";
}

} // namespace

Behaviour hang()
{
    return [](ServerConnection &connection) { connection.waitUntilClientCloses(); };
}

Behaviour closeAtOnce()
{
    return [](ServerConnection &) { };
}

Behaviour sendRaw(const QByteArray &text)
{
    return [text](ServerConnection &connection) { connection.send(text); };
}

Behaviour drip(
    const QByteArray &text, qsizetype atOnce, std::shared_ptr<Gate> gate, std::shared_ptr<std::atomic<qint64>> sent)
{
    return [=](ServerConnection &connection) {
        connection.send(text.left(atOnce));
        for (*sent = atOnce; *sent < text.size() && gate->pass(connection.stopToken()); ++*sent) {
            if (!connection.send(text.sliced(*sent, 1)))
                return;
        }
        connection.waitUntilClientCloses();
    };
}

Behaviour flood(Framing framing, qint64 size, std::shared_ptr<std::atomic<qint64>> sent)
{
    return [=](ServerConnection &connection) {
        const QByteArray piece(64 * 1024, ' ');
        const QByteArray chunk = QByteArray::number(piece.size(), 16) + "\r\n" + piece + "\r\n";
        if (!connection.send(openingOf(framing, size)))
            return;
        for (; *sent < size; *sent += piece.size()) {
            if (!connection.send(framing == Framing::chunked ? chunk : piece.left(size - *sent)))
                return;
        }
        if (framing == Framing::chunked)
            connection.send("0\r\n\r\n");
    };
}

Behaviour endlessHeaders(std::shared_ptr<std::atomic<qint64>> sent)
{
    return endless("HTTP/1.1 200 OK\r\n", QByteArray("X-More: and more\r\n").repeated(1000), std::move(sent));
}

Behaviour endlessHeaderLine(std::shared_ptr<std::atomic<qint64>> sent)
{
    return endless("HTTP/1.1 200 OK\r\nX-More: ", QByteArray(16 * 1024, 'x'), std::move(sent));
}

Behaviour endlessChunkExtension(std::shared_ptr<std::atomic<qint64>> sent)
{
    return endless(
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5;", QByteArray(16 * 1024, 'x'), std::move(sent));
}

Behaviour endlessInterimAnswers(std::shared_ptr<std::atomic<qint64>> sent)
{
    return endless({}, QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(1000), std::move(sent));
}

} // namespace hostile
