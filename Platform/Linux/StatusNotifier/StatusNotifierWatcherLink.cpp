#include "Platform/Linux/StatusNotifier/StatusNotifierWatcherLink.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView watcherService{"org.kde.StatusNotifierWatcher"};
constexpr QLatin1StringView watcherPath{"/StatusNotifierWatcher"};
constexpr QLatin1StringView watcherInterface{"org.kde.StatusNotifierWatcher"};

} // namespace

StatusNotifierWatcherLink::StatusNotifierWatcherLink(const QDBusConnection &bus, QObject *parent)
    : QObject(parent),
      m_bus(bus),
      m_services(watcherService, bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&m_services, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString &, const QString &, const QString &owner) { followOwner(owner); });
}

void StatusNotifierWatcherLink::start()
{
    for (const auto &signal : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
        m_bus.connect(watcherService, watcherPath, watcherInterface, signal, this, SLOT(askForHost()));
    m_bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this,
        SLOT(forgetWatcher()));

    auto call = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetNameOwner"_s);
    call << QString(watcherService);
    ask(call, [this](const QDBusMessage &reply) {
        if (m_owner.isEmpty())
            followOwner(reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toString() : QString());
    });
}

void StatusNotifierWatcherLink::forgetWatcher()
{
    followOwner({});
}

void StatusNotifierWatcherLink::followOwner(const QString &owner)
{
    m_owner = owner;
    m_registered = false;
    if (owner.isEmpty())
        return setState(State::absent);
    setState(State::unknown);
    registerItem();
}

void StatusNotifierWatcherLink::registerItem()
{
    auto call = callOf(watcherInterface, u"RegisterStatusNotifierItem"_s);
    call << m_bus.baseService();
    ask(call, [this, owner = m_owner](const QDBusMessage &reply) {
        if (owner != m_owner || reply.type() != QDBusMessage::ReplyMessage)
            return;
        m_registered = true;
        askForHost();
    });
}

void StatusNotifierWatcherLink::askForHost()
{
    if (m_owner.isEmpty() || !m_registered)
        return;
    auto call = callOf(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << QString(watcherInterface) << u"IsStatusNotifierHostRegistered"_s;
    ask(call, [this, owner = m_owner](const QDBusMessage &reply) {
        if (owner != m_owner || reply.type() != QDBusMessage::ReplyMessage)
            return;
        const bool hosted = reply.arguments().value(0).value<QDBusVariant>().variant().toBool();
        setState(hosted ? State::shown : State::unhosted);
    });
}

void StatusNotifierWatcherLink::setState(State state)
{
    if (state == m_state)
        return;
    m_state = state;
    Q_EMIT stateChanged();
}

QDBusMessage StatusNotifierWatcherLink::callOf(const QString &interface, const QString &method) const
{
    return QDBusMessage::createMethodCall(m_owner, watcherPath, interface, method);
}

template <class Then> void StatusNotifierWatcherLink::ask(const QDBusMessage &call, Then then)
{
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(
        pending, &QDBusPendingCallWatcher::finished, this, [then = std::move(then)](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            then(finished->reply());
        });
}
