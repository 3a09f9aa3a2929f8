#include "Log/VeranoxUnwrittenLog.h"
#include <algorithm>

namespace {

// What the record of an entry takes in the file at least: its keys, identifier, time and numbers, and a byte for each
// code unit of the texts that every entry has.
qsizetype leastBytes(const VeranoxRuntimeLogEntry &entry)
{
    constexpr qsizetype form = 150;
    const auto length = [](const std::optional<QString> &text) { return text ? text->size() : 0; };
    return form + entry.message.size() + length(entry.sessionID) + length(entry.componentInstanceID);
}

} // namespace

void VeranoxUnwrittenLog::append(VeranoxRuntimeLogEntry entry)
{
    m_bytes += leastBytes(entry);
    m_entries.push_back(std::move(entry));
    while (m_bytes - leastBytes(m_entries.front()) >= capacity)
        takeOldest();
}

QList<VeranoxRuntimeLogEntry> VeranoxUnwrittenLog::takeBatch()
{
    QList<VeranoxRuntimeLogEntry> batch;
    batch.reserve(std::min(size(), largestBatch));
    while (!isEmpty() && batch.size() < largestBatch)
        batch.append(takeOldest());
    return batch;
}

VeranoxRuntimeLogEntry VeranoxUnwrittenLog::takeOldest()
{
    VeranoxRuntimeLogEntry oldest = std::move(m_entries.front());
    m_entries.pop_front();
    m_bytes -= leastBytes(oldest);
    return oldest;
}
