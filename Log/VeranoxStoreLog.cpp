// From a text to entries of the activity log.
#include "Core/VeranoxStore.h"
#include <QRegularExpression>

void VeranoxStore::appendLog(const QString &message)
{
    static const QRegularExpression newline(QStringLiteral("[\\n\\x0B\\f\\r\\x{85}\\x{2028}\\x{2029}]"));
    const qsizetype before = m_runtimeLog.size();
    for (const QString &piece : message.split(newline)) {
        const QString line = piece.trimmed();
        if (line.isEmpty())
            continue;
        m_runtimeLog.append({.id = QUuid::createUuid(),
            .timestamp = QDateTime::currentDateTimeUtc(),
            .message = line,
            .sessionID = m_diagnostics.sessionID,
            .componentInstanceID = m_diagnostics.componentInstanceID,
            .correlationID = VeranoxDiagnosticOperationContext::correlationID(),
            .sequence = ++m_nextRuntimeLogSequence});
    }
    if (m_runtimeLog.size() == before)
        return;
    Q_EMIT runtimeLogChanged();
    announceChange();
}
