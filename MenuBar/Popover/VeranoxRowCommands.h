#pragma once
#include "Base/Jobs/Jobs.h"
#include "MenuBar/Popover/VeranoxRowActivity.h"
#include "MenuBar/Popover/VeranoxRowOperations.h"
#include <QHash>
#include <QObject>
#include <functional>

// What a person does to rows of the popover, and what each row shows of it meanwhile. One thing at a time for each row.
// Main thread only.
class VeranoxRowCommands final : public QObject {
    Q_OBJECT

public:
    VeranoxRowCommands(
        jobs::MainQueue &queue, VeranoxRowOperations operations, std::function<void(const QString &)> copyText);

    bool canOperate() const { return m_operations.setEnabled && m_operations.restart; }
    VeranoxRowActivity activity(const QString &name) const { return m_activities.value(name); }
    bool isIdle() const { return m_activities.isEmpty(); } // no row shows anything of it

    void setEnabled(const QString &name, bool enabled);
    void retry(const QString &name);
    void copy(const QString &name, const QString &text);

Q_SIGNALS:
    void changed(); // an activity
    void finished(const QString &failure); // an operation; the text is empty when it went well
    void started(); // an operation

private:
    jobs::Async<> runSetEnabled(QString name, bool enabled);
    jobs::Async<> runRetry(QString name);
    jobs::Async<> showCopied(QString name);
    bool begin(const QString &name, bool VeranoxRowActivity::*flag);
    void end(const QString &name, bool VeranoxRowActivity::*flag);

    VeranoxRowOperations m_operations;
    std::function<void(const QString &)> m_copyText;
    QHash<QString, VeranoxRowActivity> m_activities;
    jobs::JobScope m_jobs;
};
