#include "Platform/Linux/TrayStatusItem.h"

#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

// The indicator extension of GNOME Shell and the panels of Unity open the menu at each click.
bool clickOpensMenu(const QStringList &desktopNames)
{
    return desktopNames.contains("GNOME"_L1, Qt::CaseInsensitive)
        || desktopNames.contains("Unity"_L1, Qt::CaseInsensitive);
}

} // namespace

TrayStatusItem::TrayStatusItem(const QDBusConnection &bus, const QStringList &desktopNames, QObject *parent)
    : StatusItem(parent),
      m_showsOnlyMenu(clickOpensMenu(desktopNames)),
      m_notifier(bus)
{
    relay(&m_notifier);
    connect(&m_notifier, &StatusNotifierItem::watcherStateChanged, this, &TrayStatusItem::choose);
    choose();
}

void TrayStatusItem::setIcon(const QIcon &icon)
{
    m_icon = icon;
    m_notifier.setIcon(icon);
    if (m_xembed)
        m_xembed->setIcon(icon);
}

void TrayStatusItem::setToolTip(const QString &text)
{
    m_toolTip = text;
    m_notifier.setToolTip(text);
    if (m_xembed)
        m_xembed->setToolTip(text);
}

void TrayStatusItem::setAccessibleName(const QString &name)
{
    m_accessibleName = name;
    m_notifier.setAccessibleName(name);
    if (m_xembed)
        m_xembed->setAccessibleName(name);
}

void TrayStatusItem::setMenu(QMenu *menu)
{
    m_menu = menu;
    m_notifier.setMenu(menu);
    if (m_xembed)
        m_xembed->setMenu(menu);
}

bool TrayStatusItem::isAvailable() const
{
    return m_notifier.isAvailable() || (m_xembed && m_xembed->isAvailable());
}

QRect TrayStatusItem::geometry() const
{
    return m_xembed ? m_xembed->geometry() : QRect();
}

bool TrayStatusItem::isBeingPlaced() const
{
    return m_notifier.watcherState() == StatusNotifierWatcherLink::State::unknown
        || (m_xembed && m_xembed->isBeingPlaced());
}

void TrayStatusItem::choose()
{
    using enum StatusNotifierWatcherLink::State;
    switch (m_notifier.watcherState()) {
    case unknown: // keep what there is until the watcher answers
        break;
    case shown:
        if (m_xembed)
            m_xembed->setVisible(false);
        break;
    case absent:
    case unhosted:
        if (!m_xembed)
            makeXEmbedItem();
        m_xembed->setVisible(true);
        break;
    }
}

void TrayStatusItem::makeXEmbedItem()
{
    m_xembed = std::make_unique<XEmbedStatusItem>();
    m_xembed->setIcon(m_icon);
    m_xembed->setToolTip(m_toolTip);
    m_xembed->setAccessibleName(m_accessibleName);
    m_xembed->setMenu(m_menu);
    relay(m_xembed.get());
}

void TrayStatusItem::relay(StatusItem *item)
{
    connect(item, &StatusItem::primaryActivated, this, &StatusItem::primaryActivated);
    connect(item, &StatusItem::menuRequested, this, &StatusItem::menuRequested);
    connect(item, &StatusItem::availableChanged, this, &TrayStatusItem::noteAvailability);
}

void TrayStatusItem::noteAvailability()
{
    if (isAvailable() == m_wasAvailable)
        return;
    m_wasAvailable = isAvailable();
    Q_EMIT availableChanged(m_wasAvailable);
}
