#include "Platform/Linux/DBusMenu/DBusMenuExporter.h"

#include "Platform/Linux/DBusMenu/DBusMenuAdaptor.h"
#include "Platform/Linux/DBusMenu/DBusMenuProperties.h"
#include <QActionEvent>

using namespace Qt::StringLiterals;

DBusMenuExporter::DBusMenuExporter(QMenu *menu, QDBusConnection bus, QString path, QObject *parent)
    : QObject(parent),
      m_bus(std::move(bus)),
      m_path(std::move(path)),
      m_menu(menu)
{
    registerDBusMenuTypes();
    m_adaptor = new DBusMenuAdaptor(this);
    follow(menu);
    m_bus.registerObject(m_path, this, QDBusConnection::ExportAdaptors);
}

DBusMenuExporter::~DBusMenuExporter()
{
    m_bus.unregisterObject(m_path);
}

std::optional<DBusMenuLayout> DBusMenuExporter::layout(int id, int depth, const QStringList &names)
{
    const auto own = properties(id);
    if (!own)
        return std::nullopt;
    DBusMenuLayout layout{id, pickDBusMenuProperties(*own, names), {}};
    const QMenu *menu = menuOf(id);
    if (!menu || depth == 0)
        return layout;
    const auto actions = menu->actions();
    for (QAction *action : actions) {
        if (auto child = this->layout(idOf(action), depth - 1, names))
            layout.children << *child;
    }
    return layout;
}

std::optional<QVariantMap> DBusMenuExporter::properties(int id) const
{
    if (id == rootId)
        return QVariantMap{{u"children-display"_s, u"submenu"_s}};
    const QAction *action = m_actions.value(id);
    return action ? std::optional(dbusMenuProperties(*action)) : std::nullopt;
}

QList<int> DBusMenuExporter::ids() const
{
    QList<int> ids = m_actions.keys();
    std::ranges::sort(ids);
    ids.prepend(rootId);
    return ids;
}

bool DBusMenuExporter::handleEvent(int id, const QString &name)
{
    QAction *action = m_actions.value(id);
    if (!action)
        return id == rootId;
    if (name == u"clicked"_s)
        QMetaObject::invokeMethod(action, &QAction::trigger, Qt::QueuedConnection);
    return true;
}

std::optional<bool> DBusMenuExporter::prepareToShow(int id)
{
    QMenu *menu = menuOf(id);
    if (!menu)
        return std::nullopt;
    Q_EMIT menu->aboutToShow();
    return m_layoutChanged;
}

bool DBusMenuExporter::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ActionAdded:
    case QEvent::ActionRemoved:
        noteLayoutChange();
        break;
    case QEvent::ActionChanged:
        noteChange(static_cast<QActionEvent *>(event)->action());
        break;
    default:
        break;
    }
    return false;
}

QMenu *DBusMenuExporter::menuOf(int id) const
{
    if (id == rootId)
        return m_menu;
    const QAction *action = m_actions.value(id);
    return action ? action->menu<QMenu *>() : nullptr;
}

int DBusMenuExporter::idOf(QAction *action)
{
    if (const auto known = m_ids.constFind(action); known != m_ids.cend())
        return *known;
    const int id = ++m_lastId;
    m_ids[action] = id;
    m_actions[id] = action;
    m_known[id] = dbusMenuProperties(*action);
    connect(action, &QObject::destroyed, this, [this, action, id] {
        m_ids.remove(action);
        m_actions.remove(id);
        m_known.remove(id);
    });
    if (auto *submenu = action->menu<QMenu *>())
        follow(submenu);
    return id;
}

void DBusMenuExporter::follow(QMenu *menu)
{
    menu->installEventFilter(this);
    const auto actions = menu->actions();
    for (QAction *action : actions)
        idOf(action);
}

void DBusMenuExporter::noteChange(QAction *action)
{
    const int id = idOf(action);
    const QVariantMap now = dbusMenuProperties(*action);
    const QVariantMap before = std::exchange(m_known[id], now);
    if (now == before)
        return;
    if (now.keys() != before.keys()) { // it has become another kind of item
        if (auto *submenu = action->menu<QMenu *>())
            follow(submenu);
        return noteLayoutChange();
    }
    m_changedItems << id;
    announceLater();
}

void DBusMenuExporter::noteLayoutChange()
{
    m_layoutChanged = true;
    announceLater();
}

void DBusMenuExporter::announceLater()
{
    if (std::exchange(m_announcing, true))
        return;
    QMetaObject::invokeMethod(this, &DBusMenuExporter::announce, Qt::QueuedConnection);
}

void DBusMenuExporter::announce()
{
    m_announcing = false;
    const QSet<int> changedItems = std::exchange(m_changedItems, {});
    if (std::exchange(m_layoutChanged, false)) // the panel reads everything again
        return m_adaptor->announceLayout(++m_revision);
    QList<DBusMenuItem> updates;
    for (const int id : changedItems) {
        if (const auto now = properties(id))
            updates << DBusMenuItem{id, *now};
    }
    if (!updates.isEmpty())
        m_adaptor->announceProperties(updates);
}
