#include "Platform/UnixSignals.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// A handler gets no argument of ours, so the socket it writes to cannot live in the object.
std::atomic<int> handlerSocket = -1;
static_assert(std::atomic<int>::is_always_lock_free);

void noteSignal(int)
{
    const int formerErrno = errno;
    // A full buffer loses nothing: the event loop has not read the signals that fill it yet.
    const char byte = 0;
    [[maybe_unused]] const auto written = write(handlerSocket, &byte, sizeof byte);
    errno = formerErrno;
}

void makePrivateAndNonBlocking(int descriptor)
{
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

} // namespace

UnixSignals::UnixSignals(QObject *parent) : QObject(parent)
{
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, m_sockets.data()) != 0)
        qFatal("Cannot make the sockets that signals of the process go through.");
    for (const int socket : m_sockets)
        makePrivateAndNonBlocking(socket);
    m_notifier = std::make_unique<QSocketNotifier>(m_sockets[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &UnixSignals::drain);
    handlerSocket = m_sockets[1];

    struct sigaction action{};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < watched.size(); ++i) {
        sigaction(watched[i], nullptr, &m_formerActions[i]);
        const bool staysIgnored = watched[i] == SIGHUP && m_formerActions[i].sa_handler == SIG_IGN;
        if (!staysIgnored)
            sigaction(watched[i], &action, nullptr);
    }
}

UnixSignals::~UnixSignals()
{
    for (std::size_t i = 0; i < watched.size(); ++i)
        sigaction(watched[i], &m_formerActions[i], nullptr);
    handlerSocket = -1;
    m_notifier.reset();
    for (const int socket : m_sockets)
        close(socket);
}

void UnixSignals::drain()
{
    char bytes[64];
    while (read(m_sockets[0], bytes, sizeof bytes) > 0) { }
    Q_EMIT received();
}
