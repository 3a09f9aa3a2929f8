#pragma once
#include "API/Values/VeranoxRecordOverview.h"

// How many publications there are, and how many of them need a person. Each is enabled, disabled or blocked.
struct VeranoxPublicationOverview : VeranoxRecordOverview {
    qint64 blockedCount = 0;
    qint64 unreachableCount = 0; // up, switched on or not, but admitting no device

    VeranoxPublicationOverview() = default;
    explicit VeranoxPublicationOverview(const QList<VeranoxPublication> &publications);

    // Each is absent when its count is 0.
    std::optional<QString> blockedSummary() const;
    std::optional<QString> unreachableSummary() const;

    bool operator==(const VeranoxPublicationOverview &) const = default;
};
