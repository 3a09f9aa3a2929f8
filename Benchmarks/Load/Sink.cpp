#include "Benchmarks/Load/Sink.h"

#include "Benchmarks/Load/Sockets.h"
#include <array>
#include <cerrno>
#include <iostream>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <span>
#include <sys/epoll.h>
#include <sys/socket.h>

namespace veranox::load {

namespace {

void watch(const Descriptor &poll, int socket)
{
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = socket;
    if (::epoll_ctl(poll.get(), EPOLL_CTL_ADD, socket, &event) != 0)
        throwSystemError("watching a socket");
}

void acceptOne(const Descriptor &poll, const Descriptor &listener)
{
    const int socket = ::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0)
        return;
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    watch(poll, socket);
}

/// The first byte is looked at; the rest the system drops without copying it.
void serve(int socket)
{
    constexpr std::size_t most = 1 << 20;
    char first = 0;
    ssize_t count = ::recv(socket, &first, 1, MSG_DONTWAIT);
    if (count == 1 && first == '?')
        ::send(socket, "!", 1, MSG_NOSIGNAL | MSG_DONTWAIT);
    else if (count == 1)
        count = std::max<ssize_t>(1, ::recv(socket, nullptr, most, MSG_TRUNC | MSG_DONTWAIT));
    if (count == 0 || (count < 0 && errno != EAGAIN))
        ::close(socket);
}

} // namespace

void serveSink()
{
    const Descriptor listener = listenAnywhere();
    const Descriptor poll(::epoll_create1(EPOLL_CLOEXEC));
    watch(poll, listener.get());
    std::cout << portOf(listener) << std::endl;
    std::array<epoll_event, 64> events{};
    for (;;) {
        const int count = ::epoll_wait(poll.get(), events.data(), static_cast<int>(events.size()), -1);
        if (count < 0 && errno != EINTR)
            throwSystemError("waiting for sockets");
        for (const epoll_event &event : std::span(events).first(static_cast<std::size_t>(std::max(count, 0))))
            if (event.data.fd == listener.get())
                acceptOne(poll, listener);
            else
                serve(event.data.fd);
    }
}

} // namespace veranox::load
