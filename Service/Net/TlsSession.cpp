#include "Service/Net/TlsSession.h"

#include <new>
#include <openssl/err.h>
#include <openssl/ssl.h>

namespace veranox {

TlsSession::TlsSession(boost::asio::ssl::context &context, int socket)
    : m_tls(SSL_new(context.native_handle()), &SSL_free)
{
    if (!m_tls || SSL_set_fd(m_tls.get(), socket) != 1)
        throw std::bad_alloc();
    SSL_set_accept_state(m_tls.get());
    // What has to be sent again may lie elsewhere by then, and an idle connection keeps no buffers.
    SSL_set_mode(
        m_tls.get(), SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER | SSL_MODE_RELEASE_BUFFERS);
    SSL_set_options(m_tls.get(), SSL_OP_NO_RENEGOTIATION);
}

Flow TlsSession::shakeHands()
{
    ERR_clear_error();
    return flowOf(SSL_do_handshake(m_tls.get()));
}

Transfer TlsSession::read(std::span<char> room)
{
    ERR_clear_error();
    Transfer result;
    result.flow = flowOf(SSL_read_ex(m_tls.get(), room.data(), room.size(), &result.count));
    return result;
}

Transfer TlsSession::write(std::span<const char> bytes)
{
    ERR_clear_error();
    Transfer result;
    result.flow = flowOf(SSL_write_ex(m_tls.get(), bytes.data(), bytes.size(), &result.count));
    return result;
}

Flow TlsSession::finish()
{
    ERR_clear_error();
    const int result = SSL_shutdown(m_tls.get()); // 0: said here, not yet heard from the other side
    return result >= 0 ? Flow::ended : flowOf(result);
}

/// A connection that is gone without a farewell is no end, whoever cut it.
Flow TlsSession::flowOf(int result) const
{
    switch (SSL_get_error(m_tls.get(), result)) {
    case SSL_ERROR_NONE:
        return Flow::moved;
    case SSL_ERROR_ZERO_RETURN:
        return Flow::ended;
    case SSL_ERROR_WANT_READ:
        return Flow::awaitsRead;
    case SSL_ERROR_WANT_WRITE:
        return Flow::awaitsWrite;
    default:
        return Flow::failed;
    }
}

} // namespace veranox
