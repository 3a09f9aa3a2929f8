#pragma once
#include "Base/Models/KeyedListModel.h"
#include "Base/Models/Watches.h"
#include "MenuBar/Popover/VeranoxMenuPublicationRow.h"
#include "MenuBar/Popover/VeranoxMenuRowActions.h"
#include "Publications/VeranoxPublicationOverview.h"
#include <QObject>

class VeranoxStore;

// The publications in the popover: row by row while they are few, else in sum. Main thread only.
class VeranoxActivePublicationsView final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by VeranoxMenuView")
    Q_PROPERTY(bool visible READ visible NOTIFY changed)
    Q_PROPERTY(bool isCompact READ isCompact NOTIFY changed)
    Q_PROPERTY(bool canOperate READ canOperate CONSTANT)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(QString statusSummary READ statusSummary NOTIFY changed)
    Q_PROPERTY(QString attentionSummary READ attentionSummary NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)

public:
    // The store outlives the view.
    VeranoxActivePublicationsView(jobs::MainQueue &queue, VeranoxStore &store, VeranoxRowOperations operations,
        std::function<void(const QString &)> copyText);

    bool visible() const { return m_overview.totalCount > 0; }
    bool isCompact() const; // from 7 on, switched off ones included
    bool canOperate() const { return m_actions.canOperate(); }
    QString countText() const;
    QString statusSummary() const { return m_overview.statusSummary(); }
    QString attentionSummary() const { return m_overview.attentionSummary().value_or(QString()); }
    QAbstractItemModel *rows() { return &m_rows; } // empty while compact
    VeranoxMenuRowActions &actions() { return m_actions; }
    const VeranoxMenuRowActions &actions() const { return m_actions; }

    Q_INVOKABLE void setEnabled(const QString &name, bool enabled) { m_actions.setEnabled(name, enabled); }
    Q_INVOKABLE void retry(const QString &name) { m_actions.retry(name); }
    Q_INVOKABLE void copy(const QString &name, const QString &text) { m_actions.copy(name, text); }

Q_SIGNALS:
    void changed();

private:
    void show();

    VeranoxStore &m_store;
    Watches m_watches;
    VeranoxMenuRowActions m_actions;
    VeranoxPublicationOverview m_overview;
    KeyedListModel<VeranoxMenuPublicationRow> m_rows;
};
