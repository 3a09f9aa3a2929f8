#pragma once
#include "Base/Jobs/Jobs.h"
#include "Base/Models/Watches.h"
#include "MenuBar/Popover/VeranoxMenuActions.h"
#include <QObject>
#include <QtQml/qqmlregistration.h>

class VeranoxStore;

// The popover's last line: what is at hand whatever the state. Main thread only.
class VeranoxMenuFooter final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by VeranoxMenuView")
    Q_PROPERTY(bool serviceIsOnline READ serviceIsOnline NOTIFY changed)
    Q_PROPERTY(bool justCopied READ justCopied NOTIFY changed)

public:
    // The store outlives the footer.
    VeranoxMenuFooter(
        jobs::MainQueue &queue, VeranoxStore &store, VeranoxMenuActions actions, QObject *parent = nullptr);

    bool serviceIsOnline() const; // what asks the service for something works
    bool justCopied() const { return m_justCopied; } // for 1.2 s after each copy

    // The address of the proxy configuration, to the clipboard.
    Q_INVOKABLE void copyPAC();

    // The service's own page, in the person's browser.
    Q_INVOKABLE void openWebGUI() const;

    Q_INVOKABLE void requestQuit() const;

Q_SIGNALS:
    void changed();

private:
    jobs::Async<> showCopied();

    VeranoxStore &m_store;
    VeranoxMenuActions m_actions;
    bool m_justCopied = false;
    Watches m_watches;
    jobs::Job<> m_copied;
    jobs::JobScope m_jobs;
};
