#include "Base/Process/ToolRunner.h"
#include "Base/Process/ChildProcess.h"
#include "Base/Process/LaunchError.h"
#include "Base/Process/Utf8.h"
#include <csignal>

namespace {

// Ours would change what tools print: ps cuts its lines at COLUMNS, and outside of a UTF-8 locale it prints "?" for
// every character that is not ASCII.
ProcessEnvironment plainEnvironment()
{
    return {{"PATH", "/usr/bin:/bin:/usr/sbin:/sbin"}, {"LC_ALL", "C.UTF-8"}};
}

} // namespace

jobs::Async<QString> ToolRunner::run(QString executable, QStringList arguments)
{
    const auto tool = launch(executable, arguments);
    if (!tool)
        co_return QString();
    auto reading = jobs::fork(wholeOutput(tool));
    const jobs::CancelAfter limit(reading, timeLimit);
    const QByteArray output = co_await reading;
    if (tool->isRunning()) {
        tool->sendSignal(SIGKILL);
        m_jobs.start(collect(tool));
        co_return QString();
    }
    co_return decodedUtf8(output).value_or(QString());
}

std::shared_ptr<ChildProcess> ToolRunner::launch(const QString &executable, const QStringList &arguments)
{
    try {
        return std::make_shared<ChildProcess>(m_jobs.queue(),
            ChildProcess::Program{.executable = executable,
                .arguments = arguments,
                .environment = plainEnvironment(),
                .capture = ChildProcess::Capture::outputOnly});
    } catch (const LaunchError &) {
        return nullptr;
    }
}

// Leaves the tool running if it says too much or is cancelled.
jobs::Async<QByteArray> ToolRunner::wholeOutput(std::shared_ptr<ChildProcess> tool)
{
    QByteArray whole;
    for (;;) {
        const QByteArray chunk = co_await tool->read();
        if (chunk.isEmpty())
            break;
        whole += chunk;
        if (whole.size() > outputLimit)
            co_return whole;
    }
    co_await tool->exited();
    co_return whole;
}

// Waits for a killed tool, so that no dead entry of it stays in the system's table.
jobs::Async<> ToolRunner::collect(std::shared_ptr<ChildProcess> tool)
{
    co_await tool->exited();
}
