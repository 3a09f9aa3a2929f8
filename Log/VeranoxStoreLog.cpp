// The activity log of the store: from a text to entries, and from entries to the file.
#include "Base/Failures/VeranoxFailure.h"
#include "Core/VeranoxStore.h"
#include "Log/VeranoxRuntimeLogLine.h"
#include "Log/VeranoxRuntimeLogMetadataParser.h"
#include "Log/VeranoxRuntimeLogRedactor.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int maximumEntries = 500; // in memory, and so on the page and in the support export

// Old lines are cleansed by the rules of today as soon as they are seen.
VeranoxRuntimeLogEntry refreshed(VeranoxRuntimeLogEntry entry)
{
    entry.message = VeranoxRuntimeLogRedactor::redact(entry.message);
    entry.eventRedactionVersion = entry.eventRedactionVersion ? entry.eventRedactionVersion : entry.redactionVersion;
    entry.redactionVersion.reset();
    return entry;
}

template <class T> std::optional<T> firstOf(std::optional<T> preferred, std::optional<T> other)
{
    return preferred ? std::move(preferred) : std::move(other);
}

} // namespace

// ---- From a text to entries

void VeranoxStore::appendLog(const QString &message, const VeranoxLogDetails &details)
{
    for (const QStringView line : VeranoxRuntimeLogLine::split(message))
        keepLogEntry(makeLogEntry(line.toString(), details));
}

VeranoxRuntimeLogEntry VeranoxStore::makeLogEntry(const QString &line, const VeranoxLogDetails &details)
{
    const QString shown = VeranoxRuntimeLogLine::truncated(VeranoxRuntimeLogRedactor::redact(line));
    auto said = VeranoxRuntimeLogMetadataParser::parse(shown);
    auto correlationID = firstOf(details.correlationID, std::move(said.correlationID));
    auto component = firstOf(details.component, std::move(said.component));
    return {.id = QUuid::createUuid(),
        .timestamp = QDateTime::currentDateTimeUtc(),
        .profileName = details.profileName ? details.profileName : inferredProfileName(shown),
        .message = shown,
        .schemaVersion = VeranoxRuntimeLogEntry::currentSchemaVersion,
        .eventRedactionVersion = VeranoxRuntimeLogEntry::currentRedactionVersion,
        .sessionID = std::move(said.sessionID).value_or(m_diagnostics.sessionID),
        .correlationID = correlationID ? std::move(correlationID) : VeranoxDiagnosticOperationContext::correlationID(),
        .requestID = std::move(said.requestID),
        .componentInstanceID = std::move(said.componentInstanceID).value_or(m_diagnostics.componentInstanceID),
        .configGenerationID = std::move(said.configGenerationID),
        .sequence = ++m_nextRuntimeLogSequence,
        .attempt = said.attempt,
        .eventCode = firstOf(details.eventCode, std::move(said.eventCode)),
        .level = firstOf(details.level, std::move(said.level)),
        .component = component ? std::move(component) : VeranoxRuntimeLogLine::component(shown),
        .operation = std::move(said.operation),
        .outcome = std::move(said.outcome),
        .failureStage = std::move(said.failureStage),
        .retryable = said.retryable,
        .httpStatus = said.httpStatus,
        .durationMS = said.durationMS};
}

std::optional<QString> VeranoxStore::inferredProfileName(const QString &line) const
{
    if (!m_profileNames) {
        QStringList names = m_editableConfig ? m_editableConfig->profiles.keys() : QStringList();
        for (const VeranoxProfile &profile : m_profiles)
            names.append(profile.name);
        m_profileNames.emplace(std::move(names));
    }
    return m_profileNames->inferredProfileName(line);
}

// ---- From entries to the file

void VeranoxStore::keepLogEntry(VeranoxRuntimeLogEntry entry)
{
    Q_EMIT runtimeLogAdded(entry);
    m_unwrittenLog.append(entry);
    if (!m_runtimeLogWriteTask.running())
        m_runtimeLogWriteTask = m_jobs.start(writeRuntimeLog());
    m_runtimeLog.append(std::move(entry));
    if (m_runtimeLog.size() > maximumEntries)
        m_runtimeLog.removeFirst();
    m_runtimeLogChanged = true;
    announceChange();
}

// One job writes what is waiting, as much at a time as has come during the write before, so that a burst of lines is
// neither a burst of jobs nor one of writes.
jobs::Async<> VeranoxStore::writeRuntimeLog()
{
    while (!m_unwrittenLog.isEmpty()) {
        std::optional<QString> error;
        try {
            co_await m_runtimeLogPersistence->append(m_unwrittenLog.takeBatch());
        } catch (...) {
            error = u"Activity history could not be saved: "_s + describeFailure(std::current_exception());
        }
        setRuntimeLogPersistenceError(std::move(error));
    }
}

jobs::Async<> VeranoxStore::prepareRuntimeLog()
{
    if (std::exchange(m_runtimeLogLoaded, true))
        co_return;
    try {
        QList<VeranoxRuntimeLogEntry> entries = co_await m_runtimeLogPersistence->loadRecent(maximumEntries);
        std::ranges::transform(entries, entries.begin(), refreshed);
        m_runtimeLog = std::move(entries);
        m_nextRuntimeLogSequence = 0;
        setRuntimeLogPersistenceError(std::nullopt);
        m_runtimeLogChanged = true;
        announceChange();
    } catch (...) {
        setRuntimeLogPersistenceError(
            u"Activity history could not be loaded: "_s + describeFailure(std::current_exception()));
    }
    logSessionStart();
}

void VeranoxStore::logSessionStart()
{
    const VeranoxAppVersion &build = m_sessionIdentity.build;
    const QList<std::pair<QString, QString>> fields{{u"version"_s, build.version},
        {u"build_number"_s, build.buildNumber}, {u"build_id"_s, build.buildID}, {u"build_commit"_s, build.buildCommit},
        {u"build_date"_s, build.buildDate}, {u"build_channel"_s, build.buildChannel},
        {u"bundle"_s, m_sessionIdentity.bundleIdentifier}, {u"macOS"_s, m_sessionIdentity.systemVersion},
        {u"arch"_s, m_sessionIdentity.architecture}, {u"session_id"_s, m_diagnostics.sessionID},
        {u"component_instance_id"_s, m_diagnostics.componentInstanceID},
        {u"log_schema_version"_s, QString::number(VeranoxRuntimeLogEntry::currentSchemaVersion)},
        {u"event_redaction_version"_s, QString::number(VeranoxRuntimeLogEntry::currentRedactionVersion)}};
    QString message = u"[APP] session started:"_s;
    for (const auto &[key, value] : fields)
        message += u' ' + key + u'=' + value;
    appendLog(message, {.eventCode = u"app_session_started"_s, .level = u"info"_s, .component = u"macos_app"_s});
}
