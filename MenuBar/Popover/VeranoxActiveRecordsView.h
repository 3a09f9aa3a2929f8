#pragma once
#include "API/Values/VeranoxRecordOverview.h"
#include "Base/Models/KeyedListModel.h"
#include "Base/Models/Watches.h"
#include "MenuBar/Popover/VeranoxMenuRow.h"
#include "MenuBar/Popover/VeranoxRowCommands.h"
#include <QObject>

class VeranoxStore;

// The tunnels or the publications in the popover: row by row while they are few, else in sum. Main thread only.
class VeranoxActiveRecordsView : public QObject {
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
    bool visible() const { return m_overview.totalCount > 0; }
    bool isCompact() const; // from 7 on, switched off ones included
    bool canOperate() const { return m_commands.canOperate(); }
    QString countText() const;
    QString statusSummary() const { return m_overview.statusSummary(); }
    QString attentionSummary() const { return m_overview.attentionSummary().value_or(QString()); }
    QAbstractItemModel *rows() { return &m_rows; } // empty while compact
    VeranoxRowCommands &commands() { return m_commands; }
    const VeranoxRowCommands &commands() const { return m_commands; }

    Q_INVOKABLE void setEnabled(const QString &name, bool enabled) { m_commands.setEnabled(name, enabled); }
    Q_INVOKABLE void retry(const QString &name) { m_commands.retry(name); }
    Q_INVOKABLE void copy(const QString &name, const QString &text) { m_commands.copy(name, text); }

Q_SIGNALS:
    void changed();

protected:
    // The store outlives the view. The noun is that of many. What inherits calls show() once, when it stands.
    VeranoxActiveRecordsView(jobs::MainQueue &queue, VeranoxStore &store, QString noun, VeranoxRowOperations operations,
        std::function<void(const QString &)> copyText);

    // Presents what the store holds. Called again whenever what follow() reads, or what is under way in a row, has
    // become another.
    virtual void show() = 0;

    template <class Read> void follow(Read read)
    {
        m_watches.add(std::move(read), [this] { show(); });
    }

    void present(const auto &records, const VeranoxRecordOverview &overview, bool isEditable)
    {
        const bool isNew = overview != std::exchange(m_overview, overview);
        QList<VeranoxMenuRow> rows;
        if (!isCompact()) {
            for (const auto &record : records)
                rows.append(VeranoxMenuRow::of(record, surroundings(record.name, record.profile, isEditable)));
        }
        m_rows.reconcile(rows);
        if (isNew)
            Q_EMIT changed();
    }

    const VeranoxStore &store() const { return m_store; }

private:
    VeranoxMenuRow::Surroundings surroundings(const QString &name, const QString &profile, bool isEditable) const;

    VeranoxStore &m_store;
    QString m_noun;
    VeranoxRowCommands m_commands;
    VeranoxRecordOverview m_overview;
    KeyedListModel<VeranoxMenuRow> m_rows;
    Watches m_watches;
};
