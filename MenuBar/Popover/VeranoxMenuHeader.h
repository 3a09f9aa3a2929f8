#pragma once
#include "Base/Models/Watches.h"
#include "Controls/VeranoxTone.h"
#include <QObject>
#include <QtQml/qqmlregistration.h>

class VeranoxStore;

// The popover's first line: how the service is, and the one thing to do about it. Main thread only.
class VeranoxMenuHeader final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by VeranoxMenuView")
    Q_PROPERTY(QString statusTitle READ statusTitle NOTIFY changed)
    Q_PROPERTY(VeranoxTone::Tone statusTone READ statusTone NOTIFY changed)
    Q_PROPERTY(QString actionSymbol READ actionSymbol NOTIFY changed)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY changed)
    Q_PROPERTY(bool actionEnabled READ actionEnabled NOTIFY changed)

public:
    // The store outlives the header.
    explicit VeranoxMenuHeader(VeranoxStore &store, QObject *parent = nullptr);

    QString statusTitle() const;
    VeranoxTone::Tone statusTone() const;
    QString actionSymbol() const;
    QString actionTitle() const; // label and tool tip
    bool actionEnabled() const; // not while a restart is under way already

    // Restarts the service or looks anew, as actionTitle() says.
    Q_INVOKABLE void performAction();

Q_SIGNALS:
    void changed();

private:
    VeranoxStore &m_store;
    Watches m_watches;
};
