#pragma once
#include "Base/Jobs/Jobs.h"
#include "Base/Process/Descriptor.h"
#include "Base/Process/ProcessEnvironment.h"
#include <QSocketNotifier>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <optional>
#include <sys/types.h>

// A program that runs as a child of this one. Main thread only; nothing here blocks it.
//
// The child reads nothing, inherits no descriptor and no blocked or ignored signal, and leads a process group of its
// own, so that a Ctrl-C in this program's terminal is not also sent to it. Its output stays in the pipe, and the child
// waits, until it is read: however much it says, one chunk of it is in memory. (QProcess reads ahead without bound, and
// its destructor waits for the child.)
class ChildProcess {
public:
    enum class Capture { outputAndErrors, outputOnly };
    struct Program {
        QString executable; // an absolute path
        QStringList arguments;
        ProcessEnvironment environment;
        Capture capture = Capture::outputAndErrors; // what is not captured is lost
    };
    static constexpr qsizetype chunkSize = 64 * 1024; // bytes; what a pipe holds on Linux

    // Throws LaunchError, also when the program cannot be executed.
    ChildProcess(jobs::MainQueue &queue, const Program &program);
    // Neither stops the child nor waits for it.
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    pid_t processIdentifier() const { return m_identifier; }
    bool isRunning() const { return !m_status; }
    // Once it does not run: the exit status; for a child that a signal has ended 128 and the signal's number, as shells
    // count; -1 when somebody else has collected the status.
    std::int32_t terminationStatus() const { return m_status.value_or(0); }
    // Does nothing once the child has ended, so that no stranger with the same identifier is hit.
    void sendSignal(int signal) const;

    // What the child has said since the last read, at least one byte and chunkSize at most. Empty when nothing more
    // will come: it has closed its output, or it has ended and all that it said before is read. What others say who
    // have inherited its output, and outlive it, is not waited for. A cancel of the job cuts the wait short, with an
    // empty answer. One job reads.
    jobs::Async<QByteArray> read();
    // Ends when the child has, or with a cancel of the job. Only after the last read().
    jobs::Async<> exited();

private:
    void watch(QSocketNotifier &notifier, void (ChildProcess::*happened)());
    void outputArrived();
    void ended();
    void wake();
    jobs::Async<> nextEvent();
    std::optional<QByteArray> takeOutput();
    void closeOutput();

    jobs::MainQueue &m_queue;
    pid_t m_identifier = 0;
    std::optional<std::int32_t> m_status;
    qsizetype m_unread = 0; // once it has ended: what it had said and nobody had read
    Descriptor m_output;
    Descriptor m_exit;
    std::unique_ptr<QSocketNotifier> m_outputNotifier; // enabled only while a read waits
    std::unique_ptr<QSocketNotifier> m_exitNotifier;
    std::optional<jobs::Resolver<void>> m_waiter;
};
