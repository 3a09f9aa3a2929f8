#include "Base/Process/ChildProcess.h"
#include "Base/Process/LaunchError.h"
#include "Base/Process/Spawn.h"
#include "Base/Process/SpawnSupport.h"
#include <cerrno>
#include <csignal>
#include <sys/ioctl.h>
#include <sys/wait.h>

namespace {

constexpr std::int32_t signalBase = 128;
constexpr std::int32_t unknownStatus = -1;

std::int32_t collectStatus(pid_t child)
{
    siginfo_t info{};
    if (::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG) != 0 || info.si_pid != child)
        return unknownStatus;
    return info.si_code == CLD_EXITED ? info.si_status : signalBase + info.si_status;
}

qsizetype bytesIn(const Descriptor &pipe)
{
    int bytes = 0;
    return ::ioctl(pipe.number(), FIONREAD, &bytes) == 0 ? bytes : 0;
}

ssize_t readOnce(const Descriptor &from, QByteArray &buffer)
{
    ssize_t count = 0;
    do {
        count = ::read(from.number(), buffer.data(), static_cast<size_t>(buffer.size()));
    } while (count < 0 && errno == EINTR);
    return count;
}

} // namespace

ChildProcess::ChildProcess(jobs::MainQueue &queue, const Program &program) : m_queue(queue)
{
    auto pipe = openPipe();
    if (!pipe)
        throw LaunchError(program.executable, errno);
    m_identifier = spawn(program, pipe->writeEnd);
    m_output = std::move(pipe->readEnd);
    m_exit = openExitDescriptor(m_identifier);
    if (!m_exit) { // a child whose end would go unnoticed is of no use
        const int reason = errno;
        sendSignal(SIGKILL);
        throw LaunchError(program.executable, reason);
    }
    m_outputNotifier = std::make_unique<QSocketNotifier>(m_output.number(), QSocketNotifier::Read);
    m_exitNotifier = std::make_unique<QSocketNotifier>(m_exit.number(), QSocketNotifier::Read);
    watch(*m_outputNotifier, &ChildProcess::outputArrived);
    watch(*m_exitNotifier, &ChildProcess::ended);
    m_outputNotifier->setEnabled(false);
}

ChildProcess::~ChildProcess() = default;

void ChildProcess::watch(QSocketNotifier &notifier, void (ChildProcess::*happened)())
{
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [this, happened] { (this->*happened)(); });
}

void ChildProcess::sendSignal(int signal) const
{
    if (isRunning())
        ::kill(m_identifier, signal);
}

void ChildProcess::outputArrived()
{
    m_outputNotifier->setEnabled(false);
    wake();
}

void ChildProcess::ended()
{
    m_exitNotifier->setEnabled(false);
    m_outputNotifier->setEnabled(false);
    m_status = collectStatus(m_identifier);
    m_unread = m_output ? bytesIn(m_output) : 0;
    wake();
}

void ChildProcess::wake()
{
    if (const auto waiter = std::exchange(m_waiter, std::nullopt))
        waiter->resolve();
}

jobs::Async<> ChildProcess::nextEvent()
{
    const jobs::Completion<> event(m_queue);
    const auto resolver = event.resolver();
    const std::stop_callback cancelled(resolver.stopToken(), [resolver] { resolver.resolve(); });
    m_waiter = resolver;
    co_await event;
}

jobs::Async<QByteArray> ChildProcess::read()
{
    for (;;) {
        if (auto output = takeOutput())
            co_return *std::move(output);
        if (jobs::this_job::cancelled())
            co_return QByteArray();
        m_outputNotifier->setEnabled(true);
        co_await nextEvent();
    }
}

jobs::Async<> ChildProcess::exited()
{
    while (isRunning() && !jobs::this_job::cancelled())
        co_await nextEvent();
}

// Output, empty at its end; absent when there is none yet.
std::optional<QByteArray> ChildProcess::takeOutput()
{
    if (!m_output)
        return QByteArray();
    QByteArray chunk(isRunning() ? chunkSize : std::min(chunkSize, m_unread), Qt::Uninitialized);
    const ssize_t count = chunk.isEmpty() ? 0 : readOnce(m_output, chunk);
    if (count < 0 && errno == EAGAIN && isRunning())
        return std::nullopt;
    if (count <= 0) {
        closeOutput();
        return QByteArray();
    }
    chunk.truncate(count);
    m_unread -= count;
    return chunk;
}

void ChildProcess::closeOutput()
{
    m_outputNotifier->setEnabled(false);
    m_output.close();
}
