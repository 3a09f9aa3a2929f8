#pragma once
#include "Base/Models/Watches.h"
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <functional>

class VeranoxStore;

// What the panel says that asks before everything stops. Main thread only.
class VeranoxQuitConfirmation final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its presenter")
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QString notice READ notice CONSTANT)
    Q_PROPERTY(bool isQuitting READ isQuitting NOTIFY changed)
    Q_PROPERTY(QString confirmTitle READ confirmTitle NOTIFY changed)

public:
    // The store outlives it. Both callbacks are there.
    VeranoxQuitConfirmation(VeranoxStore &store, std::function<void()> confirm, std::function<void()> cancel);

    QString text() const;
    QString notice() const;
    bool isQuitting() const;
    QString confirmTitle() const;

    Q_INVOKABLE void confirm(); // once: while the application quits it does nothing
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void changed();

private:
    VeranoxStore &m_store;
    Watches m_watches;
    std::function<void()> m_confirm;
    std::function<void()> m_cancel;
};
