#include "Benchmarks/Load/Sockets.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace veranox::load {

namespace {

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

Descriptor openSocket()
{
    Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (socket.get() < 0)
        throwSystemError("opening a socket");
    return socket;
}

} // namespace

Descriptor connectTo(std::uint16_t port)
{
    Descriptor socket = openSocket();
    const sockaddr_in address = loopback(port);
    const int on = 1;
    ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        throwSystemError("connecting");
    return socket;
}

Descriptor listenAnywhere()
{
    constexpr int backlog = 4096;
    Descriptor socket = openSocket();
    const sockaddr_in address = loopback(0);
    if (::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0
        || ::listen(socket.get(), backlog) != 0)
        throwSystemError("listening");
    return socket;
}

std::uint16_t portOf(const Descriptor &listener)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getsockname(listener.get(), reinterpret_cast<sockaddr *>(&address), &size) != 0)
        throwSystemError("reading the address of a listener");
    return ntohs(address.sin_port);
}

void sendAll(const Descriptor &socket, std::string_view data)
{
    while (!data.empty()) {
        const ssize_t count = ::send(socket.get(), data.data(), data.size(), MSG_NOSIGNAL);
        if (count < 0)
            throwSystemError("sending");
        data.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::string_view receive(const Descriptor &socket, char *room, std::size_t size)
{
    const ssize_t count = ::recv(socket.get(), room, size, 0);
    if (count < 0)
        throwSystemError("receiving");
    if (count == 0)
        throw std::system_error(ECONNABORTED, std::generic_category(), "receiving");
    return {room, static_cast<std::size_t>(count)};
}

void drop(Descriptor socket)
{
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(socket.get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

} // namespace veranox::load
