#include "Log/VeranoxRuntimeLogFile.h"
#include <QDir>
#include <QStandardPaths>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// From the newest backwards: whatever lies before the last `limit` sound lines needs no decoding.
QList<VeranoxRuntimeLogEntry> newestEntries(const QByteArrayList &contents, int limit)
{
    QList<VeranoxRuntimeLogEntry> newestFirst;
    for (auto content = contents.rbegin(); content != contents.rend(); ++content) {
        for (qsizetype end = content->size(); end > 0 && newestFirst.size() < limit;) {
            const qsizetype begin = content->lastIndexOf('\n', end - 1) + 1;
            if (auto entry = VeranoxRuntimeLogEntry::fromJson(content->sliced(begin, end - begin)))
                newestFirst.append(*std::move(entry));
            end = begin - 1;
        }
    }
    std::ranges::reverse(newestFirst);
    return newestFirst;
}

QByteArrayList lines(const QList<VeranoxRuntimeLogEntry> &entries)
{
    QByteArrayList lines;
    lines.reserve(entries.size());
    for (const VeranoxRuntimeLogEntry &entry : entries)
        lines.append(entry.toJson());
    return lines;
}

} // namespace

VeranoxRuntimeLogFile::VeranoxRuntimeLogFile(
    jobs::MainQueue &queue, std::optional<QString> fileURL, std::int64_t maxBytes, int backupCount)
    : m_queue(queue),
      m_fileURL(std::move(fileURL)),
      m_maxBytes(maxBytes),
      m_backupCount(backupCount)
{
}

VeranoxRuntimeLogFile::~VeranoxRuntimeLogFile() = default;

QString VeranoxRuntimeLogFile::defaultFileURL()
{
    const QString named = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir(named.isEmpty() ? QDir::homePath() : named).filePath(u"Veranox/logs/activity.jsonl"_s);
}

jobs::Async<QList<VeranoxRuntimeLogEntry>> VeranoxRuntimeLogFile::loadRecent(int limit)
{
    if (limit < 1 || !m_fileURL)
        co_return QList<VeranoxRuntimeLogEntry>();
    co_return co_await thread().call([limit](RotatingLineFile &file) { return newestEntries(file.contents(), limit); });
}

jobs::Async<> VeranoxRuntimeLogFile::append(QList<VeranoxRuntimeLogEntry> entries)
{
    if (!m_fileURL)
        co_return;
    co_await thread().call([entries = std::move(entries)](RotatingLineFile &file) { file.append(lines(entries)); });
}

VeranoxRuntimeLogFile::Thread &VeranoxRuntimeLogFile::thread()
{
    if (!m_thread)
        m_thread.emplace(m_queue, jobs::ThreadOfItsOwn{u"activity log"_s}, *m_fileURL, m_maxBytes, m_backupCount);
    return *m_thread;
}
