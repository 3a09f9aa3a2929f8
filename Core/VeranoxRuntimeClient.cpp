#include "Core/VeranoxRuntimeClient.h"
#include "Base/Process/ChildProcess.h"
#include "Base/Process/Utf8.h"
#include "Core/VeranoxOutputLines.h"
#include "Core/VeranoxRuntimeEnvironment.h"
#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration terminateTimeout = 1500ms; // for the service to close its connections
constexpr jobs::Clock::Duration killTimeout = 500ms;
constexpr jobs::Clock::Duration exitPollInterval = 50ms;
constexpr jobs::Clock::Duration staleTerminateTime = 350ms;

} // namespace

struct VeranoxRuntimeClient::Managed {
    Managed(jobs::MainQueue &queue, const ChildProcess::Program &program, ManagedProcess kind)
        : process(queue, program),
          which(kind)
    {
    }
    ChildProcess process;
    ManagedProcess which;
    bool isTearingDown = false; // its end is wanted; with the process, for that end may come after the next launch
};

VeranoxRuntimeClient::VeranoxRuntimeClient(
    jobs::MainQueue &queue, QString guiListen, VeranoxDiagnosticSession diagnostics)
    : m_guiListen(std::move(guiListen)),
      m_diagnostics(std::move(diagnostics)),
      m_staleServices(queue),
      m_jobs(queue)
{
}

VeranoxRuntimeClient::~VeranoxRuntimeClient() = default;

// ---- Launch

QStringList VeranoxRuntimeClient::guiArguments(const VeranoxCommand &command) const
{
    return command.leadingArguments + QStringList{u"gui"_s, u"serve"_s, u"--listen"_s, m_guiListen};
}

void VeranoxRuntimeClient::startGUI(const VeranoxCommand &command)
{
    if (m_guiProcess && m_guiProcess->process.isRunning())
        return;
    m_guiProcess = launch(command, ManagedProcess::gui, guiArguments(command));
}

VeranoxRuntimeClient::Slot VeranoxRuntimeClient::launch(
    const VeranoxCommand &command, ManagedProcess which, const QStringList &arguments)
{
    const auto managed = std::make_shared<Managed>(m_jobs.queue(),
        ChildProcess::Program{.executable = command.executableURL.toLocalFile(),
            .arguments = arguments,
            .environment = veranoxRuntimeEnvironment(currentProcessEnvironment(), m_diagnostics)},
        which);
    report(*managed, u"started"_s);
    m_jobs.start(follow(managed));
    return managed;
}

// ---- Output and exit

jobs::Async<> VeranoxRuntimeClient::follow(Slot managed)
{
    co_await reportOutput(managed);
    co_await managed->process.exited();
    reportExit(*managed);
}

// One read's lines are told before the next read, and other work gets its turn between two lines and two reads: a flood
// slows down the one who makes it, not this application.
jobs::Async<> VeranoxRuntimeClient::reportOutput(Slot managed)
{
    QByteArray cutOff; // the beginning of a character that the last read's limit, not the process, has cut in two
    for (;;) {
        const QByteArray chunk = co_await managed->process.read();
        if (chunk.isEmpty())
            co_return;
        QByteArray output = std::exchange(cutOff, {}) + chunk;
        if (chunk.size() == ChildProcess::chunkSize) {
            cutOff = output.last(unfinishedUtf8Tail(output));
            output.chop(cutOff.size());
        }
        const QStringList lines = veranoxOutputLines(output);
        for (const QString &line : lines) {
            report(*managed, line);
            co_await jobs::yield();
        }
        co_await jobs::yield();
    }
}

void VeranoxRuntimeClient::reportExit(const Managed &managed)
{
    const std::int32_t status = managed.process.terminationStatus();
    report(managed, u"exited with status %1"_s.arg(status));
    if (managed.which == ManagedProcess::gui && !managed.isTearingDown && onGUIServiceExit)
        onGUIServiceExit(status);
}

void VeranoxRuntimeClient::report(const Managed &managed, const QString &text) const
{
    if (onOutput)
        onOutput((managed.which == ManagedProcess::gui ? u"[GUI] "_s : u"[Router] "_s) + text);
}

// ---- Leftovers

QString VeranoxRuntimeClient::staleGUICommandLine(const VeranoxCommand &command) const
{
    return (QStringList{command.executableURL.toLocalFile()} + guiArguments(command)).join(u' ');
}

jobs::Async<> VeranoxRuntimeClient::terminateStaleGUIService(VeranoxCommand command)
{
    const QString commandLine = staleGUICommandLine(command);
    const QList<qint32> stale = co_await m_staleServices.matchingProcessIdentifiers(commandLine);
    if (stale.isEmpty())
        co_return;
    co_await m_staleServices.signalIfStillMatching(stale, commandLine, SIGTERM);
    co_await jobs::sleep(staleTerminateTime);
    co_await m_staleServices.signalIfStillMatching(stale, commandLine, SIGKILL);
}

// ---- Stop

jobs::Async<> VeranoxRuntimeClient::shutdown()
{
    const auto stopping = m_jobs.start(performShutdown()); // a job of its own: it needs its time in a cancelled one too
    co_await stopping;
}

jobs::Async<> VeranoxRuntimeClient::performShutdown()
{
    co_await stop(&m_routerProcess);
    co_await stop(&m_guiProcess);
}

jobs::Async<> VeranoxRuntimeClient::stop(Slot *slot)
{
    const Slot managed = *slot;
    if (managed && managed->process.isRunning()) {
        managed->isTearingDown = true;
        managed->process.sendSignal(SIGTERM);
        if (!co_await waitForExit(managed, terminateTimeout)) {
            managed->process.sendSignal(SIGKILL);
            co_await waitForExit(managed, killTimeout);
        }
    }
    if (*slot == managed) // unless another was launched meanwhile
        slot->reset();
}

jobs::Async<bool> VeranoxRuntimeClient::waitForExit(Slot managed, jobs::Clock::Duration timeout)
{
    const auto deadline = jobs::this_job::clock().after(timeout);
    while (managed->process.isRunning() && jobs::this_job::clock().now() < deadline)
        co_await jobs::sleep(exitPollInterval);
    co_return !managed->process.isRunning();
}

void VeranoxRuntimeClient::terminateImmediately()
{
    forget(&m_routerProcess);
    forget(&m_guiProcess);
}

void VeranoxRuntimeClient::forget(Slot *slot)
{
    const Slot managed = std::exchange(*slot, nullptr);
    if (managed && managed->process.isRunning()) {
        managed->isTearingDown = true;
        managed->process.sendSignal(SIGTERM);
    }
}

// ---- State

std::optional<VeranoxManagedProcessState> VeranoxRuntimeClient::guiProcess() const
{
    return stateOf(m_guiProcess);
}

std::optional<VeranoxManagedProcessState> VeranoxRuntimeClient::routerProcess() const
{
    return stateOf(m_routerProcess);
}

std::optional<VeranoxManagedProcessState> VeranoxRuntimeClient::stateOf(const Slot &slot)
{
    if (!slot)
        return std::nullopt;
    return VeranoxManagedProcessState{
        .isRunning = slot->process.isRunning(), .terminationStatus = slot->process.terminationStatus()};
}
