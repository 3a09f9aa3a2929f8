#pragma once
#include "Log/RotatingLineFile.h"
#include "Log/VeranoxRuntimeLogPersisting.h"

// Keeps the activity log as JSON lines in a rotating file. Works in a thread of its own, which starts at the first call
// and sleeps between calls. Made, called and destroyed in the main thread; the destructor waits for the calls made so
// far, some seconds at most.
class VeranoxRuntimeLogFile final : public VeranoxRuntimeLogPersisting {
public:
    static constexpr std::int64_t defaultMaxBytes = 2'097'152; // of one file
    static constexpr int defaultBackupCount = 3;

    // Without a fileURL nothing is written or read. maxBytes below 1 counts as 1, backupCount below 0 as 0.
    VeranoxRuntimeLogFile(
        jobs::MainQueue &queue, std::optional<QString> fileURL, std::int64_t maxBytes, int backupCount);
    ~VeranoxRuntimeLogFile() override;

    // Veranox/logs/activity.jsonl in the user's folder for application data, or in the home folder where the system
    // names none.
    static QString defaultFileURL();

    std::optional<QString> fileURL() const override { return m_fileURL; }

    // Lines that can't be read are passed over. Nothing is touched for a limit below 1.
    jobs::Async<QList<VeranoxRuntimeLogEntry>> loadRecent(int limit) override;
    jobs::Async<> append(QList<VeranoxRuntimeLogEntry> entries) override;

private:
    using Thread = jobs::Isolated<RotatingLineFile>;
    Thread &thread();
    jobs::MainQueue &m_queue;
    std::optional<QString> m_fileURL;
    std::int64_t m_maxBytes;
    int m_backupCount;
    std::optional<Thread> m_thread;
};
