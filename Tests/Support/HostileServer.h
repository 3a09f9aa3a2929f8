// What a service that is broken, or not ours, may do with a request. For ScriptedServer::expect().
#pragma once
#include "Tests/Support/ScriptedServer.h"

namespace hostile {

// Reads the request and never answers.
Behaviour hang();
// Closes without a word.
Behaviour closeAtOnce();
// Sends this text as it stands, then closes.
Behaviour sendRaw(const QByteArray &text);
// Sends the beginning of this text at once, then a byte of it each time the gate opens, until the client has closed.
// `sent` tells how much of it is on its way.
Behaviour drip(
    const QByteArray &text, qsizetype atOnce, std::shared_ptr<Gate> gate, std::shared_ptr<std::atomic<qint64>> sent);

enum class Framing { contentLength, chunked, untilClose };
// A 200 answer with a body of this size, made while it is sent. `sent` counts the bytes of the body that were taken.
Behaviour flood(Framing framing, qint64 size, std::shared_ptr<std::atomic<qint64>> sent);
// Header lines without end; then counts as above.
Behaviour endlessHeaders(std::shared_ptr<std::atomic<qint64>> sent);
// One header line without end.
Behaviour endlessHeaderLine(std::shared_ptr<std::atomic<qint64>> sent);
// A chunk whose size line has no end.
Behaviour endlessChunkExtension(std::shared_ptr<std::atomic<qint64>> sent);
// Interim answers (100) without end.
Behaviour endlessInterimAnswers(std::shared_ptr<std::atomic<qint64>> sent);

} // namespace hostile
