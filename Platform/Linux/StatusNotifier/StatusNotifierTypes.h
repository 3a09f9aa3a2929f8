#pragma once
#include <QByteArray>
#include <QDBusArgument>
#include <QIcon>
#include <QList>
#include <QString>

// One picture as the StatusNotifier protocol carries it, D-Bus type (iiay): 32-bit ARGB, network byte order, not
// premultiplied, rows without padding.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    bool operator==(const StatusNotifierPixmap &) const = default;
};

// The tool tip as the protocol carries it, D-Bus type (sa(iiay)ss). Hosts may read the text as markup.
struct StatusNotifierToolTip {
    QString iconName;
    QList<StatusNotifierPixmap> iconPixmaps;
    QString title;
    QString text;

    bool operator==(const StatusNotifierToolTip &) const = default;
};

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierToolTip &toolTip);

// Makes the types above known to QtDBus. May be called more than once.
void registerStatusNotifierTypes();

// The icon in the sizes of a panel at 100 %, 150 % and 200 % scale; empty for a null icon.
QList<StatusNotifierPixmap> statusNotifierPixmaps(const QIcon &icon);
