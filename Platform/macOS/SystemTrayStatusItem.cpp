#include "Platform/macOS/SystemTrayStatusItem.h"

#include <QGuiApplication>

SystemTrayStatusItem::SystemTrayStatusItem(QObject *parent) : StatusItem(parent)
{
    connect(&m_icon, &QSystemTrayIcon::activated, this, &SystemTrayStatusItem::handleActivation);
    m_icon.show();
}

void SystemTrayStatusItem::setIcon(const QIcon &icon)
{
    m_icon.setIcon(icon);
}

void SystemTrayStatusItem::setToolTip(const QString &text)
{
    m_icon.setToolTip(text);
}

void SystemTrayStatusItem::setAccessibleName(const QString &) { }

void SystemTrayStatusItem::setMenu(QMenu *) { }

bool SystemTrayStatusItem::isAvailable() const
{
    return QSystemTrayIcon::isSystemTrayAvailable();
}

QRect SystemTrayStatusItem::geometry() const
{
    return m_icon.geometry();
}

void SystemTrayStatusItem::handleActivation(QSystemTrayIcon::ActivationReason reason)
{
    const QPoint where = geometry().center();
    // Qt reports a second click that follows fast as a double click only.
    const bool isPrimary = reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick;
    const bool withControl = QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier);
    if (reason == QSystemTrayIcon::Context || (isPrimary && withControl))
        Q_EMIT menuRequested(where);
    else if (isPrimary)
        Q_EMIT primaryActivated(where);
}
