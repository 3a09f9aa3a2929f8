#pragma once
#include "Tests/Service/Support/Peer.h"
#include <boost/asio/ssl/context.hpp>
#include <memory>

namespace veranox::test {

/// A client's end of a TLS connection over a plain blocking one. Trusts whomever it meets. While it lives, SIGPIPE is
/// ignored.
class TlsPeer {
public:
    enum class End { none, inOrder, cut };

    /// Shakes hands; throws when that fails.
    explicit TlsPeer(Peer peer);
    TlsPeer(const TlsPeer &) = delete;
    TlsPeer &operator=(const TlsPeer &) = delete;
    ~TlsPeer() = default;

    bool send(std::string_view bytes);
    /// As much as is asked for, or what came until the end.
    std::string receive(std::size_t count);
    std::string receiveAll() { return receive(SIZE_MAX); }
    /// How the other side's half ended.
    End end() const { return m_end; }
    /// Says farewell; the other half goes on.
    void finishSending();
    /// The connection below.
    Peer &peer() { return m_peer; }

private:
    Peer m_peer;
    boost::asio::ssl::context m_context;
    std::unique_ptr<SSL, decltype(&SSL_free)> m_tls;
    End m_end = End::none;
};

} // namespace veranox::test
