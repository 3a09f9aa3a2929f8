#pragma once
#include "Log/VeranoxRuntimeLogEntry.h"
#include <QList>
#include <deque>

// The entries that wait for the disk, in the order in which they were made.
//
// When a flood of lines outruns the disk, the oldest give way to the newest: as soon as those alone would fill every
// file that the log keeps, so that a rotation would delete the older ones as soon as they were written.
class VeranoxUnwrittenLog {
public:
    // In bytes of the log's files: at least what they hold together, 4 of 2 MiB.
    static constexpr qsizetype capacity = 8 * 1024 * 1024;
    static constexpr qsizetype largestBatch = 500; // entries; written in some milliseconds

    bool isEmpty() const { return m_entries.empty(); }
    qsizetype size() const { return static_cast<qsizetype>(m_entries.size()); }
    void append(VeranoxRuntimeLogEntry entry);

    // Takes the oldest entries, largestBatch at most.
    QList<VeranoxRuntimeLogEntry> takeBatch();

private:
    VeranoxRuntimeLogEntry takeOldest();

    std::deque<VeranoxRuntimeLogEntry> m_entries;
    qsizetype m_bytes = 0; // that they take in the file, at least
};
