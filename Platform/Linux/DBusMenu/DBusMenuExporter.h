#pragma once
#include "Platform/Linux/DBusMenu/DBusMenuTypes.h"
#include <QDBusConnection>
#include <QHash>
#include <QMenu>
#include <QPointer>
#include <QSet>
#include <optional>

class DBusMenuAdaptor;

// Exports a QMenu with its submenus as com.canonical.dbusmenu, for panels that draw the menu of an item themselves.
// Items are known by numbers that are never used twice; the menu itself is 0. Changes are told once per turn of the
// event loop. Main thread only.
class DBusMenuExporter : public QObject {
    Q_OBJECT

public:
    static constexpr int rootId = 0;

    // The menu is not owned and may go first: the export is then an empty menu.
    DBusMenuExporter(QMenu *menu, QDBusConnection bus, QString path, QObject *parent = nullptr);
    ~DBusMenuExporter() override;

    QDBusConnection bus() const { return m_bus; }

    // Counts the changes of the layout.
    uint revision() const { return m_revision; }

    // The item with what stands under it, `depth` levels deep (all for -1), with the named properties (all for none).
    // Absent for a number that is not in the menu.
    std::optional<DBusMenuLayout> layout(int id, int depth, const QStringList &names);

    // The properties of one item. Absent for a number that is not in the menu.
    std::optional<QVariantMap> properties(int id) const;

    // Every item that is known.
    QList<int> ids() const;

    // Carries out what a person did; false for a number that is not in the menu. A click triggers the action in a later
    // turn, so that the panel has its answer first.
    bool handleEvent(int id, const QString &name);

    // Tells the menu that it is about to be shown, so that its owner can bring it up to date. True when that changed
    // the layout. Absent for a number that is no menu.
    std::optional<bool> prepareToShow(int id);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QMenu *menuOf(int id) const;
    int idOf(QAction *action);
    void follow(QMenu *menu);
    void noteChange(QAction *action);
    void noteLayoutChange();
    void announceLater();
    void announce();

    QDBusConnection m_bus;
    QString m_path;
    QPointer<QMenu> m_menu;
    DBusMenuAdaptor *m_adaptor = nullptr; // a child
    QHash<QAction *, int> m_ids;
    QHash<int, QAction *> m_actions; // the same, the other way round; dead actions are taken out
    QHash<int, QVariantMap> m_known; // what the panel was last told of an item
    int m_lastId = rootId;
    uint m_revision = 1;
    QSet<int> m_changedItems; // to be announced at the end of this turn
    bool m_layoutChanged = false;
    bool m_announcing = false;
};
