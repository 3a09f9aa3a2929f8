#pragma once
#include "Profiles/VeranoxProfileOrder.h"
#include <QHash>
#include <utility>

// Each profile that has records, in the shared order of profiles, with its records in their own order. A record of an
// unknown profile stands in no group. Any thread.
template <class Record>
QList<std::pair<VeranoxProfile, QList<Record>>> groupedByProfile(
    const QList<VeranoxProfile> &profiles, const QList<Record> &records)
{
    QHash<QString, QList<Record>> recordsOf;
    for (const Record &record : records)
        recordsOf[record.profile].append(record);
    QList<std::pair<VeranoxProfile, QList<Record>>> groups;
    for (const VeranoxProfile &profile : inSharedProfileOrder(profiles))
        if (const auto own = recordsOf.constFind(profile.name); own != recordsOf.constEnd())
            groups.append({profile, *own});
    return groups;
}
