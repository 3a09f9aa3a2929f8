#pragma once
#include "Platform/Linux/StatusNotifier/StatusNotifierTypes.h"
#include "Platform/Linux/StatusNotifier/StatusNotifierWatcherLink.h"
#include "Platform/StatusItem.h"
#include <QDBusConnection>
#include <memory>

class DBusMenuExporter;
class StatusNotifierAdaptor;

// The status item of panels that speak StatusNotifier over D-Bus. It registers with the watcher of the desktop whenever
// one comes. Without a bus it is never available.
//
// It stands in for QSystemTrayIcon there because Qt drops the point of a click, which anchors the popover, and never
// looks for a watcher that comes after the first icon. The menu is exported by a class of our own on the same
// connection, because hosts look for it at the bus name of the item; a GLib library would bring a second name.
class StatusNotifierItem : public StatusItem {
    Q_OBJECT

public:
    static constexpr QLatin1StringView itemPath{"/StatusNotifierItem"};
    static constexpr QLatin1StringView menuPath{"/MenuBar"};
    static constexpr QLatin1StringView noMenuPath{"/NO_DBUSMENU"};

    explicit StatusNotifierItem(const QDBusConnection &bus, QObject *parent = nullptr);
    ~StatusNotifierItem() override;

    void setIcon(const QIcon &icon) override;
    void setToolTip(const QString &text) override;
    void setAccessibleName(const QString &name) override;
    void setMenu(QMenu *menu) override;
    bool isAvailable() const override;
    QRect geometry() const override;

    // What the desktop offers to StatusNotifier items at the moment.
    StatusNotifierWatcherLink::State watcherState() const { return m_watcher.state(); }

    // What a host reads.
    bool hasMenu() const;
    QList<StatusNotifierPixmap> iconPixmaps();
    QString toolTip() const { return m_toolTip; }
    QString accessibleName() const { return m_accessibleName; }

    // What a host calls. The point is global, null when the host does not know it.
    void handlePrimaryClick(QPoint where);
    void handleSecondaryClick(QPoint where);

Q_SIGNALS:
    void watcherStateChanged();

private:
    void followWatcher();

    QDBusConnection m_bus;
    QIcon m_icon;
    QList<StatusNotifierPixmap> m_pixmaps; // of m_icon, made when a host first asks
    QString m_toolTip;
    QString m_accessibleName;
    StatusNotifierAdaptor *m_adaptor = nullptr; // a child
    std::unique_ptr<DBusMenuExporter> m_menu; // null without menu
    StatusNotifierWatcherLink m_watcher;
    bool m_wasAvailable = false;
};
