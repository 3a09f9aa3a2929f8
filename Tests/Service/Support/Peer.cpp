#include "Tests/Service/Support/Peer.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace veranox::test {

namespace {

sockaddr_in endpoint(const std::string &address, std::uint16_t port)
{
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    ::inet_pton(AF_INET, address.c_str(), &result.sin_addr);
    return result;
}

} // namespace

Peer::Peer(int descriptor) : m_descriptor(descriptor)
{
    if (descriptor < 0)
        throw std::runtime_error("no socket");
    const timeval patience{.tv_sec = 20, .tv_usec = 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    ::setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
}

Peer::Peer(Peer &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) { }

Peer::~Peer()
{
    close();
}

Peer Peer::connectTo(std::uint16_t port, const std::string &address)
{
    Peer peer(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in to = endpoint(address, port);
    if (::connect(peer.m_descriptor, reinterpret_cast<const sockaddr *>(&to), sizeof to) != 0)
        throw std::runtime_error("no connection to port " + std::to_string(port));
    return peer;
}

Peer Peer::connectFrom(std::uint16_t own, std::uint16_t port)
{
    Peer peer(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in from = endpoint("127.0.0.1", own);
    const sockaddr_in to = endpoint("127.0.0.1", port);
    if (::bind(peer.m_descriptor, reinterpret_cast<const sockaddr *>(&from), sizeof from) != 0
        || ::connect(peer.m_descriptor, reinterpret_cast<const sockaddr *>(&to), sizeof to) != 0)
        throw std::runtime_error("no connection from port " + std::to_string(own));
    return peer;
}

Peer Peer::listening()
{
    Peer peer(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in at = endpoint("127.0.0.1", 0);
    if (::bind(peer.m_descriptor, reinterpret_cast<const sockaddr *>(&at), sizeof at) != 0
        || ::listen(peer.m_descriptor, SOMAXCONN) != 0)
        throw std::runtime_error("no listener");
    return peer;
}

Peer Peer::accept() const
{
    return Peer(::accept4(m_descriptor, nullptr, nullptr, SOCK_CLOEXEC));
}

std::uint16_t Peer::port() const
{
    sockaddr_in at{};
    socklen_t size = sizeof at;
    ::getsockname(m_descriptor, reinterpret_cast<sockaddr *>(&at), &size);
    return ntohs(at.sin_port);
}

std::uint16_t Peer::remotePort() const
{
    sockaddr_in at{};
    socklen_t size = sizeof at;
    ::getpeername(m_descriptor, reinterpret_cast<sockaddr *>(&at), &size);
    return ntohs(at.sin_port);
}

bool Peer::send(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t count = ::send(m_descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::size_t Peer::sendWhatFits(std::string_view bytes) const
{
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            ::send(m_descriptor, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno != EAGAIN)
            throw std::runtime_error("the connection is gone");
        if (count <= 0)
            break;
        sent += static_cast<std::size_t>(count);
    }
    return sent;
}

std::string Peer::receive(std::size_t count) const
{
    std::string result;
    std::array<char, 65536> piece{};
    while (result.size() < count) {
        const ssize_t got = ::recv(m_descriptor, piece.data(), std::min(piece.size(), count - result.size()), 0);
        if (got <= 0)
            break;
        result.append(piece.data(), static_cast<std::size_t>(got));
    }
    return result;
}

void Peer::finishSending() const
{
    ::shutdown(m_descriptor, SHUT_WR);
}

void Peer::reset()
{
    const linger now{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(m_descriptor, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    close();
}

void Peer::close()
{
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
}

bool Peer::endsInReset() const
{
    std::array<char, 65536> piece{};
    ssize_t count = 0;
    do
        count = ::recv(m_descriptor, piece.data(), piece.size(), 0);
    while (count > 0);
    return count < 0 && errno == ECONNRESET;
}

} // namespace veranox::test
