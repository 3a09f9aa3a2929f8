#include "Tests/Service/Support/TlsPeer.h"

#include <array>
#include <csignal>
#include <openssl/err.h>
#include <stdexcept>
#include <utility>

namespace veranox::test {

TlsPeer::TlsPeer(Peer peer)
    : m_peer(std::move(peer)),
      m_context(boost::asio::ssl::context::tls_client),
      m_tls(SSL_new(m_context.native_handle()), &SSL_free)
{
    ::signal(SIGPIPE, SIG_IGN);
    SSL_set_fd(m_tls.get(), m_peer.descriptor());
    ERR_clear_error();
    if (SSL_connect(m_tls.get()) != 1)
        throw std::runtime_error("no TLS connection");
}

bool TlsPeer::send(std::string_view bytes)
{
    ERR_clear_error();
    std::size_t sent = 0;
    return SSL_write_ex(m_tls.get(), bytes.data(), bytes.size(), &sent) == 1 && sent == bytes.size();
}

std::string TlsPeer::receive(std::size_t count)
{
    std::string result;
    std::array<char, 16384> piece{};
    while (result.size() < count) {
        std::size_t got = 0;
        ERR_clear_error();
        const int outcome = SSL_read_ex(m_tls.get(), piece.data(), std::min(piece.size(), count - result.size()), &got);
        if (outcome != 1) {
            m_end = SSL_get_error(m_tls.get(), outcome) == SSL_ERROR_ZERO_RETURN ? End::inOrder : End::cut;
            break;
        }
        result.append(piece.data(), got);
    }
    return result;
}

void TlsPeer::finishSending()
{
    SSL_shutdown(m_tls.get());
}

} // namespace veranox::test
