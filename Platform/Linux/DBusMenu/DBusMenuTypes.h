#pragma once
#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QStringList>
#include <QVariantMap>

// The types of com.canonical.dbusmenu, the protocol in which a panel reads a menu that it draws itself.

// One item with its properties, (ia{sv}).
struct DBusMenuItem {
    int id = 0;
    QVariantMap properties;
};

// The names of properties that went back to their default, (ias).
struct DBusMenuItemKeys {
    int id = 0;
    QStringList keys;
};

// One item with everything under it, (ia{sv}av).
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayout> children;
};

// Something that a person did to an item, (isvu).
struct DBusMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItem &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItem &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemKeys &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemKeys &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayout &layout);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayout &layout);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &event);

// Makes the types above known to QtDBus. May be called more than once.
void registerDBusMenuTypes();
