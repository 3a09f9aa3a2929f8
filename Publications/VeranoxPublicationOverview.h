#pragma once
#include "API/Records/VeranoxPublication.h"
#include <QList>
#include <optional>

// How many publications there are, and how many of them need a person. Each is enabled, disabled or blocked. A
// property is empty where its text is absent.
struct VeranoxPublicationOverview {
    Q_GADGET
    Q_PROPERTY(qint64 totalCount MEMBER totalCount)
    Q_PROPERTY(qint64 enabledCount MEMBER enabledCount)
    Q_PROPERTY(qint64 disabledCount MEMBER disabledCount)
    Q_PROPERTY(qint64 attentionCount MEMBER attentionCount)
    Q_PROPERTY(qint64 blockedCount MEMBER blockedCount)
    Q_PROPERTY(qint64 unreachableCount MEMBER unreachableCount)
    Q_PROPERTY(QString statusSummary READ statusSummary)
    Q_PROPERTY(QString attentionSummary READ attentionSummaryOrEmpty)
    Q_PROPERTY(QString blockedSummary READ blockedSummaryOrEmpty)
    Q_PROPERTY(QString unreachableSummary READ unreachableSummaryOrEmpty)

public:
    qint64 totalCount = 0;
    qint64 enabledCount = 0;
    qint64 disabledCount = 0;
    qint64 attentionCount = 0; // enabled ones with an error
    qint64 blockedCount = 0;
    qint64 unreachableCount = 0; // up, switched on or not, but admitting no device

    VeranoxPublicationOverview() = default;
    explicit VeranoxPublicationOverview(const QList<VeranoxPublication> &publications);

    QString statusSummary() const;

    // Each is absent when its count is 0.
    std::optional<QString> attentionSummary() const;
    std::optional<QString> blockedSummary() const;
    std::optional<QString> unreachableSummary() const;

    bool operator==(const VeranoxPublicationOverview &) const = default;

private:
    QString attentionSummaryOrEmpty() const { return attentionSummary().value_or(QString()); }
    QString blockedSummaryOrEmpty() const { return blockedSummary().value_or(QString()); }
    QString unreachableSummaryOrEmpty() const { return unreachableSummary().value_or(QString()); }
};

Q_DECLARE_METATYPE(VeranoxPublicationOverview)
