#pragma once
#include "Service/Net/Flow.h"
#include <boost/asio/ssl/context.hpp>
#include <memory>
#include <span>

namespace veranox {

/// The server's side of TLS over a connected socket, without ever waiting. An end counts as one only when the other
/// side has said that it is one (close_notify); after it the other direction goes on. Used by one thread at a time, in
/// which SIGPIPE is ignored or blocked.
class TlsSession {
public:
    /// The socket must not block, and outlives it. Throws std::bad_alloc.
    TlsSession(boost::asio::ssl::context &context, int socket);

    /// `moved` once both sides are agreed. Until then, and when it says to wait, to be called again.
    Flow shakeHands();
    Transfer read(std::span<char> room);
    Transfer write(std::span<const char> bytes);
    /// Says that nothing more comes from here.
    Flow finish();

private:
    Flow flowOf(int result) const;

    std::unique_ptr<SSL, decltype(&SSL_free)> m_tls;
};

/// That session as the end of a conduit. The session must outlive it.
class TlsEnd {
public:
    explicit TlsEnd(TlsSession &session) : m_session(&session) { }

    Transfer read(std::span<char> room) { return m_session->read(room); }
    Transfer write(std::span<const char> bytes) { return m_session->write(bytes); }
    Flow finish() { return m_session->finish(); }

private:
    TlsSession *m_session;
};

} // namespace veranox
