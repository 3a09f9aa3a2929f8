#pragma once
#include "API/Values/VeranoxRecordClass.h"
#include <QList>
#include <QString>
#include <algorithm>
#include <optional>

// How many records of a kind there are, and how many of them need a person.
struct VeranoxRecordOverview {
    qint64 totalCount = 0;
    qint64 enabledCount = 0;
    qint64 disabledCount = 0;
    qint64 attentionCount = 0; // enabled ones with an error

    VeranoxRecordOverview() = default;

    // The counts of the records but for `disabled`, and the rest as enabled.
    template <class Record>
    VeranoxRecordOverview(const QList<Record> &records, qint64 disabled)
        : totalCount(records.size()),
          enabledCount(totalCount - disabled),
          disabledCount(disabled),
          attentionCount(std::ranges::count_if(records, needsAttention<Record>))
    {
    }

    QString statusSummary() const;

    // Absent when none needs attention.
    std::optional<QString> attentionSummary() const;

    bool operator==(const VeranoxRecordOverview &) const = default;
};
