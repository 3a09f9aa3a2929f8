#pragma once
#include "API/Client/VeranoxDiagnosticSession.h"
#include "Base/Jobs/Jobs.h"
#include "Base/Models/Watches.h"
#include "Log/VeranoxLogDetails.h"
#include "Log/VeranoxProfileNameInference.h"
#include "Log/VeranoxRuntimeLogPersisting.h"
#include "Log/VeranoxSessionIdentity.h"
#include "Log/VeranoxUnwrittenLog.h"
#include <QObject>
#include <QProperty>
#include <memory>

class VeranoxState;

// The activity log: from a text to redacted entries, and from entries to the file. Main thread only; the state outlives
// it. Its getters can be followed like the state's, which tells of the log's changes with its own.
class VeranoxActivityLog final : public QObject {
    Q_OBJECT

public:
    VeranoxActivityLog(jobs::MainQueue &queue, VeranoxState &state,
        std::unique_ptr<VeranoxRuntimeLogPersisting> persistence, // absent: the log ends with this object
        VeranoxDiagnosticSession diagnostics, VeranoxSessionIdentity identity);
    ~VeranoxActivityLog() override;

    // Adds the lines of message, trimmed and redacted, empty ones left out, and keeps them for later runs. Never fails.
    void append(const QString &message, const VeranoxLogDetails &details = {});

    // Brings back the newest entries of earlier runs, in place of what was logged so far, and logs the start of this
    // one. Once; every further call does nothing. A failure goes to persistenceError.
    jobs::Async<> prepare();

    // The newest 500. They change for those who follow them once per turn of the event loop.
    const QList<VeranoxRuntimeLogEntry> &entries() const;

    // How many turns of the event loop have changed the entries.
    int turns() const { return m_turns.value(); }

    // Why the log cannot be written or read.
    const std::optional<QString> &persistenceError() const { return m_persistenceError.value(); }

    // The profile, as the service or the configuration spells it, that a line of the log mentions.
    std::optional<QString> inferredProfileName(const QString &line) const;

Q_SIGNALS:
    void added(const VeranoxRuntimeLogEntry &entry); // at once, for each new entry

private:
    VeranoxRuntimeLogEntry makeEntry(const QString &line, const VeranoxLogDetails &details);
    void keep(VeranoxRuntimeLogEntry entry);
    void noteTurn();
    jobs::Async<> write();
    void logSessionStart();
    void announceChange();

    VeranoxState &m_state;
    std::unique_ptr<VeranoxRuntimeLogPersisting> m_persistence;
    VeranoxDiagnosticSession m_diagnostics;
    VeranoxSessionIdentity m_identity;
    QList<VeranoxRuntimeLogEntry> m_entries;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(VeranoxActivityLog, int, m_turns, 0, &VeranoxActivityLog::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(
        VeranoxActivityLog, std::optional<QString>, m_persistenceError, &VeranoxActivityLog::announceChange)
    bool m_turnNoted = false;
    bool m_isLoaded = false;
    std::uint64_t m_lastSequence = 0;
    VeranoxUnwrittenLog m_unwritten;
    mutable std::optional<VeranoxProfileNameInference> m_profileNames; // absent until asked for
    Watches m_watches;
    jobs::Job<> m_writeTask;
    jobs::JobScope m_jobs; // last: its jobs end before what they use
};
