#pragma once
#include "Base/Jobs/Jobs.h"
#include <QStringList>
#include <memory>

class ChildProcess;

// Runs small tools of the system for what they print. Main thread only, from within a job; nothing here blocks it.
class ToolRunner {
public:
    static constexpr jobs::Clock::Duration timeLimit = std::chrono::seconds(5);
    static constexpr qsizetype outputLimit = 1024 * 1024; // bytes

    explicit ToolRunner(jobs::MainQueue &queue) : m_jobs(queue) { }
    ToolRunner(const ToolRunner &) = delete;
    ToolRunner &operator=(const ToolRunner &) = delete;

    // What the tool wrote to its standard output, once it has ended. Empty when it could not be started, when that is
    // not UTF-8, and when the tool went beyond a limit and was killed for it. The tool sees an environment that makes
    // its output the same everywhere. Never fails.
    jobs::Async<QString> run(QString executable, QStringList arguments);

private:
    std::shared_ptr<ChildProcess> launch(const QString &executable, const QStringList &arguments);
    static jobs::Async<QByteArray> wholeOutput(std::shared_ptr<ChildProcess> tool);
    static jobs::Async<> collect(std::shared_ptr<ChildProcess> tool);
    jobs::JobScope m_jobs; // last
};
