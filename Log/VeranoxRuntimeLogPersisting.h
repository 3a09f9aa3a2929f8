#pragma once
#include "Base/Jobs/Jobs.h"
#include "Log/VeranoxRuntimeLogEntry.h"
#include <QList>
#include <QString>
#include <optional>

// Where the activity log is kept between runs. Called from jobs of the main thread, which never waits for the disk; the
// calls are served one at a time, in their order.
class VeranoxRuntimeLogPersisting {
public:
    VeranoxRuntimeLogPersisting(const VeranoxRuntimeLogPersisting &) = delete;
    VeranoxRuntimeLogPersisting &operator=(const VeranoxRuntimeLogPersisting &) = delete;
    virtual ~VeranoxRuntimeLogPersisting() = default;

    // The path of the file that new entries go to, if there is one.
    virtual std::optional<QString> fileURL() const = 0;

    // The newest `limit` entries, oldest first. Throws a LocalizedError.
    virtual jobs::Async<QList<VeranoxRuntimeLogEntry>> loadRecent(int limit) = 0;

    // Keeps more entries, in their order. One that cannot be kept does not stop the others. Throws a LocalizedError
    // when the last one is not kept.
    virtual jobs::Async<> append(QList<VeranoxRuntimeLogEntry> entries) = 0;

protected:
    VeranoxRuntimeLogPersisting() = default;
};
