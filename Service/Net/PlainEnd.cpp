#include "Service/Net/PlainEnd.h"

#include <cerrno>
#include <sys/socket.h>

namespace veranox {

namespace {

/// Tries again for as long as a signal comes in between.
template <class Call> ssize_t undisturbed(Call call)
{
    ssize_t count = 0;
    do
        count = call();
    while (count < 0 && errno == EINTR);
    return count;
}

bool wouldBlock()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == ENOBUFS;
}

} // namespace

Transfer PlainEnd::read(std::span<char> room) const
{
    const ssize_t count = undisturbed([&] { return ::recv(m_socket, room.data(), room.size(), 0); });
    if (count > 0)
        return {Flow::moved, static_cast<std::size_t>(count)};
    if (count == 0)
        return {Flow::ended, 0};
    return {wouldBlock() ? Flow::awaitsRead : Flow::failed, 0};
}

Transfer PlainEnd::write(std::span<const char> bytes) const
{
    const ssize_t count = undisturbed([&] { return ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL); });
    if (count >= 0)
        return {Flow::moved, static_cast<std::size_t>(count)};
    return {wouldBlock() ? Flow::awaitsWrite : Flow::failed, 0};
}

Flow PlainEnd::finish() const
{
    ::shutdown(m_socket, SHUT_WR);
    return Flow::ended;
}

} // namespace veranox
