#pragma once
#include "API/Records/VeranoxTunnel.h"
#include <QList>
#include <optional>

// How many tunnels there are, and how many of them need a person. A property is empty where its text is absent.
struct VeranoxTunnelOverview {
    Q_GADGET
    Q_PROPERTY(qint64 totalCount MEMBER totalCount)
    Q_PROPERTY(qint64 enabledCount MEMBER enabledCount)
    Q_PROPERTY(qint64 disabledCount MEMBER disabledCount)
    Q_PROPERTY(qint64 attentionCount MEMBER attentionCount)
    Q_PROPERTY(QString statusSummary READ statusSummary)
    Q_PROPERTY(QString attentionSummary READ attentionSummaryOrEmpty)

public:
    qint64 totalCount = 0;
    qint64 enabledCount = 0;
    qint64 disabledCount = 0;
    qint64 attentionCount = 0; // enabled ones with an error

    VeranoxTunnelOverview() = default;
    explicit VeranoxTunnelOverview(const QList<VeranoxTunnel> &tunnels);

    QString statusSummary() const;

    // Absent when none needs attention.
    std::optional<QString> attentionSummary() const;

    bool operator==(const VeranoxTunnelOverview &) const = default;

private:
    QString attentionSummaryOrEmpty() const { return attentionSummary().value_or(QString()); }
};

Q_DECLARE_METATYPE(VeranoxTunnelOverview)
