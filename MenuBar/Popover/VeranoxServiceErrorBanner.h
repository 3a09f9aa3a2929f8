#pragma once
#include "Base/Models/Watches.h"
#include <QObject>
#include <QtQml/qqmlregistration.h>

class VeranoxStore;

// Says that nothing is routed, in fixed words: what exactly failed stands in the log. Main thread only.
class VeranoxServiceErrorBanner final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by VeranoxMenuView")
    Q_PROPERTY(bool visible READ visible NOTIFY changed)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QString buttonTitle READ buttonTitle NOTIFY changed)
    Q_PROPERTY(bool buttonEnabled READ buttonEnabled NOTIFY changed)

public:
    // The store outlives the banner.
    explicit VeranoxServiceErrorBanner(VeranoxStore &store, QObject *parent = nullptr);

    bool visible() const; // exactly while the service has failed
    QString title() const;
    QString text() const;
    QString buttonTitle() const;
    bool buttonEnabled() const;

    // Restarts the service where that helps, else looks anew.
    Q_INVOKABLE void fix();

Q_SIGNALS:
    void changed();

private:
    VeranoxStore &m_store;
    Watches m_watches;
};
