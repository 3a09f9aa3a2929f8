#include "Log/VeranoxActivityLog.h"
#include "Base/Failures/Failure.h"
#include "Log/VeranoxRuntimeLogDiscarder.h"
#include "Log/VeranoxRuntimeLogLine.h"
#include "Log/VeranoxRuntimeLogMetadataParser.h"
#include "Log/VeranoxRuntimeLogRedactor.h"
#include "State/VeranoxState.h"

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

QStringList profileNames(const VeranoxState &state)
{
    QStringList names = state.editableConfig() ? state.editableConfig()->profiles.keys() : QStringList();
    for (const VeranoxProfile &profile : state.profiles())
        names.append(profile.name);
    return names;
}

} // namespace

VeranoxActivityLog::VeranoxActivityLog(jobs::MainQueue &queue, VeranoxState &state,
    std::unique_ptr<VeranoxRuntimeLogPersisting> persistence, VeranoxDiagnosticSession diagnostics,
    VeranoxSessionIdentity identity)
    : m_state(state),
      m_persistence(std::move(persistence)),
      m_diagnostics(std::move(diagnostics)),
      m_identity(std::move(identity)),
      m_jobs(queue)
{
    if (!m_persistence)
        m_persistence = std::make_unique<VeranoxRuntimeLogDiscarder>();
    m_watches.add([&state] { return profileNames(state); }, [this] { m_profileNames.reset(); });
}

VeranoxActivityLog::~VeranoxActivityLog() = default;

const QList<VeranoxRuntimeLogEntry> &VeranoxActivityLog::entries() const
{
    std::ignore = turns(); // whoever reads the entries in a binding follows them by this
    return m_entries;
}

void VeranoxActivityLog::announceChange()
{
    m_state.announceChange();
}

// ---- From a text to entries

void VeranoxActivityLog::append(const QString &message, const VeranoxLogDetails &details)
{
    for (const QStringView line : VeranoxRuntimeLogLine::split(message))
        keep(makeEntry(line.toString(), details));
}

VeranoxRuntimeLogEntry VeranoxActivityLog::makeEntry(const QString &line, const VeranoxLogDetails &details)
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
        .sequence = ++m_lastSequence,
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

std::optional<QString> VeranoxActivityLog::inferredProfileName(const QString &line) const
{
    if (!m_profileNames)
        m_profileNames.emplace(profileNames(m_state));
    return m_profileNames->inferredProfileName(line);
}

// ---- From entries to the file

void VeranoxActivityLog::keep(VeranoxRuntimeLogEntry entry)
{
    Q_EMIT added(entry);
    m_unwritten.append(entry);
    if (!m_writeTask.running())
        m_writeTask = m_jobs.start(write());
    m_entries.append(std::move(entry));
    if (m_entries.size() > maximumEntries)
        m_entries.removeFirst();
    noteTurn();
}

// The entries of one turn are one change.
void VeranoxActivityLog::noteTurn()
{
    if (std::exchange(m_turnNoted, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_turnNoted = false;
            m_turns = m_turns + 1;
        },
        Qt::QueuedConnection);
    announceChange(); // behind it in the same turn
}

// One job writes what is waiting, as much at a time as has come during the write before, so that a burst of lines is
// neither a burst of jobs nor one of writes.
jobs::Async<> VeranoxActivityLog::write()
{
    while (!m_unwritten.isEmpty()) {
        std::optional<QString> error;
        try {
            co_await m_persistence->append(m_unwritten.takeBatch());
        } catch (...) {
            error = u"Activity history could not be saved: "_s + describeFailure(std::current_exception());
        }
        m_persistenceError = std::move(error);
    }
}

jobs::Async<> VeranoxActivityLog::prepare()
{
    if (std::exchange(m_isLoaded, true))
        co_return;
    try {
        QList<VeranoxRuntimeLogEntry> entries = co_await m_persistence->loadRecent(maximumEntries);
        std::ranges::transform(entries, entries.begin(), refreshed);
        m_entries = std::move(entries);
        m_lastSequence = 0;
        m_persistenceError = std::nullopt;
        noteTurn();
    } catch (...) {
        m_persistenceError = u"Activity history could not be loaded: "_s + describeFailure(std::current_exception());
    }
    logSessionStart();
}

void VeranoxActivityLog::logSessionStart()
{
    const VeranoxAppVersion &build = m_identity.build;
    const QList<std::pair<QString, QString>> fields{{u"version"_s, build.version},
        {u"build_number"_s, build.buildNumber}, {u"build_id"_s, build.buildID}, {u"build_commit"_s, build.buildCommit},
        {u"build_date"_s, build.buildDate}, {u"build_channel"_s, build.buildChannel},
        {u"bundle"_s, m_identity.bundleIdentifier}, {u"macOS"_s, m_identity.systemVersion},
        {u"arch"_s, m_identity.architecture}, {u"session_id"_s, m_diagnostics.sessionID},
        {u"component_instance_id"_s, m_diagnostics.componentInstanceID},
        {u"log_schema_version"_s, QString::number(VeranoxRuntimeLogEntry::currentSchemaVersion)},
        {u"event_redaction_version"_s, QString::number(VeranoxRuntimeLogEntry::currentRedactionVersion)}};
    QString message = u"[APP] session started:"_s;
    for (const auto &[key, value] : fields)
        message += u' ' + key + u'=' + value;
    append(message, {.eventCode = u"app_session_started"_s, .level = u"info"_s, .component = u"macos_app"_s});
}
