#include "Platform/Linux/StatusNotifier/StatusNotifierItem.h"

#include "Platform/Linux/DBusMenu/DBusMenuExporter.h"
#include "Platform/Linux/StatusNotifier/StatusNotifierAdaptor.h"
#include <QGuiApplication>

StatusNotifierItem::StatusNotifierItem(const QDBusConnection &bus, QObject *parent)
    : StatusItem(parent),
      m_bus(bus),
      m_watcher(bus)
{
    registerStatusNotifierTypes();
    m_adaptor = new StatusNotifierAdaptor(this);
    connect(&m_watcher, &StatusNotifierWatcherLink::stateChanged, this, &StatusNotifierItem::followWatcher);
    if (m_bus.registerObject(itemPath, this, QDBusConnection::ExportAdaptors))
        m_watcher.start();
    else
        m_watcher.giveUp();
}

StatusNotifierItem::~StatusNotifierItem()
{
    m_bus.unregisterObject(itemPath);
}

void StatusNotifierItem::setIcon(const QIcon &icon)
{
    if (icon.cacheKey() == m_icon.cacheKey())
        return;
    m_icon = icon;
    m_pixmaps.clear();
    Q_EMIT m_adaptor->NewIcon();
}

void StatusNotifierItem::setToolTip(const QString &text)
{
    if (text == m_toolTip)
        return;
    m_toolTip = text;
    Q_EMIT m_adaptor->NewToolTip();
}

void StatusNotifierItem::setAccessibleName(const QString &name)
{
    if (name == m_accessibleName)
        return;
    m_accessibleName = name;
    Q_EMIT m_adaptor->NewIconAccessibleDesc();
}

void StatusNotifierItem::setMenu(QMenu *menu)
{
    m_menu.reset();
    if (menu)
        m_menu = std::make_unique<DBusMenuExporter>(menu, m_bus, menuPath);
    Q_EMIT m_adaptor->NewMenu();
}

bool StatusNotifierItem::isAvailable() const
{
    return m_watcher.state() == StatusNotifierWatcherLink::State::shown;
}

QRect StatusNotifierItem::geometry() const
{
    return {};
}

bool StatusNotifierItem::hasMenu() const
{
    return m_menu != nullptr;
}

QList<StatusNotifierPixmap> StatusNotifierItem::iconPixmaps()
{
    if (m_pixmaps.isEmpty())
        m_pixmaps = statusNotifierPixmaps(m_icon);
    return m_pixmaps;
}

void StatusNotifierItem::handlePrimaryClick(QPoint where)
{
    // The pointer is over the panel, so no window of ours has seen the key: ask the system.
    if (QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier))
        Q_EMIT menuRequested(where);
    else
        Q_EMIT primaryActivated(where);
}

void StatusNotifierItem::handleSecondaryClick(QPoint where)
{
    Q_EMIT menuRequested(where);
}

void StatusNotifierItem::followWatcher()
{
    Q_EMIT watcherStateChanged();
    if (isAvailable() == m_wasAvailable)
        return;
    m_wasAvailable = isAvailable();
    Q_EMIT availableChanged(m_wasAvailable);
}
