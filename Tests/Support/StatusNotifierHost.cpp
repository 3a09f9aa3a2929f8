// A StatusNotifier watcher and host for tests. It says READY when it stands, then takes one command a line and answers
// each with one line, in order:
//
//   items                 ITEMS service/path ...
//   icon                  ICON WxH:HASH ...           the pictures of the item; HASH is of the pixels
//   dump FILE             DUMPED WxH                  the largest picture as an image file
//   property NAME         PROPERTY value
//   tooltip               TOOLTIP title
//   menu                  MENU id=label|id=--|...     "--" a separator, "(label)" not enabled, "[id=label]" a submenu
//   choose ID             CHOSEN
//   show                  SHOWN true|false            AboutToShow of the whole menu
//   click X Y             CLICKED                     Activate
//   context X Y           CLICKED                     ContextMenu
//   counts                COUNTS NewIcon=n NewToolTip=n LayoutUpdated=n ItemsPropertiesUpdated=n
//   host on|off           HOST on|off                 whether the watcher says that a host is there
//   quit
//
// What goes wrong is answered with "ERROR reason". Arguments: --no-host starts without a host.
#include "Platform/Linux/DBusMenu/DBusMenuTypes.h"
#include "Platform/Linux/StatusNotifier/StatusNotifierTypes.h"
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QImage>
#include <QSocketNotifier>
#include <QtEndian>
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void say(const QString &line)
{
    std::fprintf(stdout, "%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

struct Failure {
    QString reason;
};

// The watcher of the desktop and its only host.
class Watcher : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    Watcher(QDBusConnection bus, bool hasHost)
        : m_bus(bus),
          m_leaving({}, bus, QDBusServiceWatcher::WatchForUnregistration),
          m_hasHost(hasHost)
    {
        connect(&m_leaving, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString &service) {
            m_items.removeIf([&](const QString &item) { return item.startsWith(service + u'/'); });
            m_leaving.removeWatchedService(service);
        });
    }

    QStringList items() const { return m_items; }
    bool hasHost() const { return m_hasHost; }
    int protocolVersion() const { return 0; }

    void setHasHost(bool hasHost)
    {
        m_hasHost = hasHost;
        if (hasHost)
            Q_EMIT StatusNotifierHostRegistered();
        else
            Q_EMIT StatusNotifierHostUnregistered();
    }

    QVariantList call(
        const QString &path, const QString &interface, const QString &method, const QVariantList &arguments)
    {
        if (m_items.isEmpty())
            throw Failure{u"no item"_s};
        auto message = QDBusMessage::createMethodCall(m_items.first().section(u'/', 0, 0), path, interface, method);
        message.setArguments(arguments);
        const QDBusMessage reply = m_bus.call(message, QDBus::BlockWithGui, 5000);
        if (reply.type() != QDBusMessage::ReplyMessage)
            throw Failure{reply.errorMessage()};
        return reply.arguments();
    }

    QVariant property(const QString &name)
    {
        const auto answer =
            call(itemPath(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {u"org.kde.StatusNotifierItem"_s, name});
        return answer.value(0).value<QDBusVariant>().variant();
    }

    void callItem(const QString &method, int x, int y)
    {
        call(itemPath(), u"org.kde.StatusNotifierItem"_s, method, {x, y});
    }

    QVariantList callMenu(const QString &method, const QVariantList &arguments)
    {
        const QString path = property(u"Menu"_s).value<QDBusObjectPath>().path();
        return call(path, u"com.canonical.dbusmenu"_s, method, arguments);
    }

    QString counts() const
    {
        return u"NewIcon=%1 NewToolTip=%2 LayoutUpdated=%3 ItemsPropertiesUpdated=%4"_s.arg(m_icons)
            .arg(m_toolTips)
            .arg(m_layouts)
            .arg(m_updates);
    }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &service)
    {
        const QString item =
            service.startsWith(u'/') ? message().service() + service : service + u"/StatusNotifierItem"_s;
        if (m_items.contains(item))
            return;
        m_items << item;
        const QString owner = item.section(u'/', 0, 0);
        m_leaving.addWatchedService(owner);
        const QString itemInterface = u"org.kde.StatusNotifierItem"_s;
        const QString menuInterface = u"com.canonical.dbusmenu"_s;
        m_bus.connect(owner, {}, itemInterface, u"NewIcon"_s, this, SLOT(countIcon()));
        m_bus.connect(owner, {}, itemInterface, u"NewToolTip"_s, this, SLOT(countToolTip()));
        m_bus.connect(owner, {}, menuInterface, u"LayoutUpdated"_s, this, SLOT(countLayout()));
        m_bus.connect(owner, {}, menuInterface, u"ItemsPropertiesUpdated"_s, this, SLOT(countUpdate()));
        Q_EMIT StatusNotifierItemRegistered(item);
    }
    void RegisterStatusNotifierHost(const QString &) { }

    void countIcon() { ++m_icons; }
    void countToolTip() { ++m_toolTips; }
    void countLayout() { ++m_layouts; }
    void countUpdate() { ++m_updates; }

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString &item);
    void StatusNotifierItemUnregistered(const QString &item);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    QString itemPath() const { return u"/"_s + m_items.value(0).section(u'/', 1); }

    QDBusConnection m_bus;
    QDBusServiceWatcher m_leaving;
    QStringList m_items;
    bool m_hasHost;
    int m_icons = 0;
    int m_toolTips = 0;
    int m_layouts = 0;
    int m_updates = 0;
};

QString describe(const StatusNotifierPixmap &pixmap)
{
    const QByteArray hash = QCryptographicHash::hash(pixmap.pixels, QCryptographicHash::Sha1).toHex().left(12);
    return u"%1x%2:%3"_s.arg(pixmap.width).arg(pixmap.height).arg(QLatin1StringView(hash));
}

QString describe(const DBusMenuLayout &item)
{
    const QVariantMap &properties = item.properties;
    const bool isSeparator = properties[u"type"_s] == u"separator"_s;
    QString label = isSeparator ? u"--"_s : properties[u"label"_s].toString();
    if (!properties.value(u"enabled"_s, true).toBool())
        label = u"("_s + label + u")"_s;
    if (!properties.value(u"visible"_s, true).toBool())
        label = u"~"_s + label;
    if (properties[u"toggle-type"_s] == u"checkmark"_s)
        label += properties[u"toggle-state"_s] == 1 ? u" x"_s : u" o"_s;
    QString text = u"%1=%2"_s.arg(item.id).arg(label);
    if (properties[u"children-display"_s] == u"submenu"_s) {
        for (const DBusMenuLayout &child : item.children)
            text += u"["_s + describe(child) + u"]"_s;
    }
    return text;
}

QString writeImage(const StatusNotifierPixmap &pixmap, const QString &file)
{
    QImage image(pixmap.width, pixmap.height, QImage::Format_ARGB32);
    for (int row = 0; row < pixmap.height; ++row)
        qFromBigEndian<quint32>(
            pixmap.pixels.constData() + qsizetype(row) * pixmap.width * 4, pixmap.width, image.scanLine(row));
    if (!image.save(file))
        throw Failure{u"cannot write "_s + file};
    return u"DUMPED %1x%2"_s.arg(pixmap.width).arg(pixmap.height);
}

QString answer(Watcher &watcher, const QStringList &words)
{
    const QString verb = words.value(0);
    const QString argument = words.value(1);
    if (verb == u"items"_s)
        return u"ITEMS "_s + watcher.items().join(u' ');
    if (verb == u"icon"_s || verb == u"dump"_s) {
        const auto pixmaps = qdbus_cast<QList<StatusNotifierPixmap>>(watcher.property(u"IconPixmap"_s));
        if (verb == u"dump"_s)
            return writeImage(pixmaps.value(pixmaps.size() - 1), argument);
        QStringList pictures;
        for (const auto &pixmap : pixmaps)
            pictures << describe(pixmap);
        return u"ICON "_s + pictures.join(u' ');
    }
    if (verb == u"property"_s) {
        const QVariant value = watcher.property(argument);
        const bool isPath = value.metaType() == QMetaType::fromType<QDBusObjectPath>();
        return u"PROPERTY "_s + (isPath ? value.value<QDBusObjectPath>().path() : value.toString());
    }
    if (verb == u"tooltip"_s)
        return u"TOOLTIP "_s + qdbus_cast<StatusNotifierToolTip>(watcher.property(u"ToolTip"_s)).title;
    if (verb == u"menu"_s) {
        const auto reply = watcher.callMenu(u"GetLayout"_s, {0, -1, QStringList()});
        QStringList items;
        for (const DBusMenuLayout &item : qdbus_cast<DBusMenuLayout>(reply.value(1)).children)
            items << describe(item);
        return u"MENU "_s + items.join(u'|');
    }
    if (verb == u"choose"_s) {
        watcher.callMenu(
            u"Event"_s, {argument.toInt(), u"clicked"_s, QVariant::fromValue(QDBusVariant(QString())), uint(0)});
        return u"CHOSEN"_s;
    }
    if (verb == u"show"_s)
        return u"SHOWN "_s + watcher.callMenu(u"AboutToShow"_s, {0}).value(0).toString();
    if (verb == u"click"_s || verb == u"context"_s) {
        watcher.callItem(
            verb == u"click"_s ? u"Activate"_s : u"ContextMenu"_s, argument.toInt(), words.value(2).toInt());
        return u"CLICKED"_s;
    }
    if (verb == u"counts"_s)
        return u"COUNTS "_s + watcher.counts();
    if (verb == u"host"_s) {
        watcher.setHasHost(argument == u"on"_s);
        return u"HOST "_s + argument;
    }
    throw Failure{u"unknown command"_s};
}

QString answerOrError(Watcher &watcher, const QString &line)
{
    try {
        return answer(watcher, line.split(u' '));
    } catch (const Failure &failure) {
        return u"ERROR "_s + failure.reason;
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    registerStatusNotifierTypes();
    registerDBusMenuTypes();
    auto bus = QDBusConnection::sessionBus();
    Watcher watcher(bus, !application.arguments().contains(u"--no-host"_s));
    bus.registerObject(u"/StatusNotifierWatcher"_s, &watcher,
        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals | QDBusConnection::ExportAllProperties);
    if (!bus.registerService(u"org.kde.StatusNotifierWatcher"_s)) {
        say(u"ERROR the name is taken"_s);
        return 1;
    }
    say(u"READY"_s);

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QByteArray pending;
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char bytes[4096];
        const auto count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0)
            return QCoreApplication::quit();
        pending.append(bytes, count);
        for (qsizetype end; (end = pending.indexOf('\n')) >= 0; pending.remove(0, end + 1)) {
            const QString line = QString::fromUtf8(pending.first(end));
            if (line == u"quit"_s)
                return QCoreApplication::quit();
            say(answerOrError(watcher, line));
        }
    });
    return application.exec();
}

#include "StatusNotifierHost.moc"
