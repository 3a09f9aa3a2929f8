#pragma once
#include "Platform/Linux/DBusMenu/DBusMenuTypes.h"
#include <QDBusAbstractAdaptor>
#include <QDBusMessage>

class DBusMenuExporter;

// The interface com.canonical.dbusmenu: what a panel reads from the menu and calls on it.
class DBusMenuAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    // Becomes part of the exporter, which is the object that is exported.
    explicit DBusMenuAdaptor(DBusMenuExporter *exporter);

    uint version() const { return 3; } // of the protocol
    QString textDirection() const;
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

    void announceLayout(uint revision);
    void announceProperties(const QList<DBusMenuItem> &updates);

public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames, const QDBusMessage &message,
        DBusMenuLayout &layout);
    QList<DBusMenuItem> GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames);
    QDBusVariant GetProperty(int id, const QString &name, const QDBusMessage &message);
    void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp, const QDBusMessage &message);
    QList<int> EventGroup(const QList<DBusMenuEvent> &events);
    bool AboutToShow(int id, const QDBusMessage &message);
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<DBusMenuItem> &updatedProps, const QList<DBusMenuItemKeys> &removedProps);
    void LayoutUpdated(uint revision, int parent);
    void ItemActivationRequested(int id, uint timestamp);

private:
    void refuse(const QDBusMessage &message, int id) const;

    DBusMenuExporter *m_exporter; // the parent
};
