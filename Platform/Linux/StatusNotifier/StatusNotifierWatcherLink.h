#pragma once
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

// Follows org.kde.StatusNotifierWatcher on the session bus: registers the item of this connection with every watcher
// that comes, under the connection's unique name, and knows whether the watcher has a host that shows items. Never
// blocks, never polls.
class StatusNotifierWatcherLink : public QObject {
    Q_OBJECT

public:
    enum class State {
        unknown, // not asked yet, or a watcher that has not answered
        absent, // no watcher on the bus
        unhosted, // a watcher, but no panel behind it
        shown, // registered, and a panel shows it
    };

    explicit StatusNotifierWatcherLink(const QDBusConnection &bus, QObject *parent = nullptr);

    // Begins to look for a watcher. Call once.
    void start();

    // Settles on `absent` for good.
    void giveUp() { setState(State::absent); }

    State state() const { return m_state; }

Q_SIGNALS:
    void stateChanged();

private Q_SLOTS:
    void askForHost();
    void forgetWatcher();

private:
    void followOwner(const QString &owner);
    void registerItem();
    void setState(State state);
    QDBusMessage callOf(const QString &interface, const QString &method) const;
    template <class Then> void ask(const QDBusMessage &call, Then then);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_services;
    QString m_owner; // unique name of the watcher; empty without one
    bool m_registered = false;
    State m_state = State::unknown;
};
