#include "Platform/Linux/StatusNotifier/StatusNotifierAdaptor.h"

#include "Platform/Linux/StatusNotifier/StatusNotifierItem.h"

StatusNotifierAdaptor::StatusNotifierAdaptor(StatusNotifierItem *item) : QDBusAbstractAdaptor(item), m_item(item) { }

QDBusObjectPath StatusNotifierAdaptor::menu() const
{
    return QDBusObjectPath(m_item->hasMenu() ? StatusNotifierItem::menuPath : StatusNotifierItem::noMenuPath);
}

QList<StatusNotifierPixmap> StatusNotifierAdaptor::iconPixmaps() const
{
    return m_item->iconPixmaps();
}

QString StatusNotifierAdaptor::accessibleName() const
{
    return m_item->accessibleName();
}

StatusNotifierToolTip StatusNotifierAdaptor::toolTip() const
{
    return {{}, {}, m_item->toolTip(), {}};
}

void StatusNotifierAdaptor::Activate(int x, int y)
{
    m_item->handlePrimaryClick(QPoint(x, y));
}

void StatusNotifierAdaptor::ContextMenu(int x, int y)
{
    m_item->handleSecondaryClick(QPoint(x, y));
}

void StatusNotifierAdaptor::SecondaryActivate(int, int)
{
    // The middle button has no meaning here, but hosts take an unknown method for a broken item.
}

void StatusNotifierAdaptor::Scroll(int, const QString &)
{
    // As the middle button.
}
