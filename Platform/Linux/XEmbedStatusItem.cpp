#include "Platform/Linux/XEmbedStatusItem.h"

#include "Platform/Linux/XWindowPlace.h"
#include <QApplication>

namespace {

// The window that Qt has the tray embed. QSystemTrayIcon does not give it out.
const QWidget *iconWindow()
{
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find(windows, QLatin1StringView("QSystemTrayIconSys"), &QWidget::objectName);
    return found == windows.end() ? nullptr : *found;
}

} // namespace

XEmbedStatusItem::XEmbedStatusItem(QObject *parent) : StatusItem(parent)
{
    connect(&m_icon, &QSystemTrayIcon::activated, this, &XEmbedStatusItem::handleActivation);
    connect(&m_trays, &XEmbedTrayWatcher::maybeChanged, this, &XEmbedStatusItem::noteAvailability);
}

void XEmbedStatusItem::setIcon(const QIcon &icon)
{
    m_icon.setIcon(icon);
}

void XEmbedStatusItem::setToolTip(const QString &text)
{
    m_icon.setToolTip(text);
}

void XEmbedStatusItem::setAccessibleName(const QString &) { }

void XEmbedStatusItem::setMenu(QMenu *menu)
{
    m_icon.setContextMenu(menu);
}

bool XEmbedStatusItem::isAvailable() const
{
    return m_icon.isVisible() && QSystemTrayIcon::isSystemTrayAvailable();
}

QRect XEmbedStatusItem::geometry() const
{
    const QWidget *window = isAvailable() ? iconWindow() : nullptr;
    const QRect place = window ? placeOnDisplay(*window) : QRect();
    // Trays take icons in beyond the edge of the screen and move them to their place afterwards.
    return QGuiApplication::screenAt(place.center()) ? place : QRect();
}

bool XEmbedStatusItem::isBeingPlaced() const
{
    return isAvailable() && geometry().isEmpty();
}

void XEmbedStatusItem::setVisible(bool visible)
{
    m_icon.setVisible(visible);
    noteAvailability();
}

void XEmbedStatusItem::handleActivation(QSystemTrayIcon::ActivationReason reason)
{
    // Qt reports a second click that follows fast as a double click only; and the secondary click has popped the menu
    // up already.
    if (reason != QSystemTrayIcon::Trigger && reason != QSystemTrayIcon::DoubleClick)
        return;
    const QPoint where = geometry().center();
    if (QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier))
        Q_EMIT menuRequested(where);
    else
        Q_EMIT primaryActivated(where);
}

void XEmbedStatusItem::noteAvailability()
{
    if (isAvailable() == m_wasAvailable)
        return;
    m_wasAvailable = isAvailable();
    Q_EMIT availableChanged(m_wasAvailable);
}
