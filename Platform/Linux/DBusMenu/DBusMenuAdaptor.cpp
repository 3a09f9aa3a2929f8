#include "Platform/Linux/DBusMenu/DBusMenuAdaptor.h"

#include "Platform/Linux/DBusMenu/DBusMenuExporter.h"
#include "Platform/Linux/DBusMenu/DBusMenuProperties.h"
#include <QGuiApplication>

using namespace Qt::StringLiterals;

DBusMenuAdaptor::DBusMenuAdaptor(DBusMenuExporter *exporter) : QDBusAbstractAdaptor(exporter), m_exporter(exporter) { }

QString DBusMenuAdaptor::textDirection() const
{
    return QGuiApplication::isRightToLeft() ? u"rtl"_s : u"ltr"_s;
}

void DBusMenuAdaptor::announceLayout(uint revision)
{
    Q_EMIT LayoutUpdated(revision, DBusMenuExporter::rootId);
}

void DBusMenuAdaptor::announceProperties(const QList<DBusMenuItem> &updates)
{
    Q_EMIT ItemsPropertiesUpdated(updates, {});
}

uint DBusMenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
    const QDBusMessage &message, DBusMenuLayout &layout)
{
    if (auto found = m_exporter->layout(parentId, recursionDepth, propertyNames))
        layout = *found;
    else
        refuse(message, parentId);
    return m_exporter->revision();
}

QList<DBusMenuItem> DBusMenuAdaptor::GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames)
{
    const QList<int> wanted = ids.isEmpty() ? m_exporter->ids() : ids;
    QList<DBusMenuItem> items;
    for (const int id : wanted) {
        if (const auto properties = m_exporter->properties(id))
            items << DBusMenuItem{id, pickDBusMenuProperties(*properties, propertyNames)};
    }
    return items;
}

QDBusVariant DBusMenuAdaptor::GetProperty(int id, const QString &name, const QDBusMessage &message)
{
    const auto properties = m_exporter->properties(id);
    if (!properties || !properties->contains(name)) {
        refuse(message, id);
        return {};
    }
    return QDBusVariant(properties->value(name));
}

void DBusMenuAdaptor::Event(int id, const QString &eventId, const QDBusVariant &, uint, const QDBusMessage &message)
{
    if (!m_exporter->handleEvent(id, eventId))
        refuse(message, id);
}

QList<int> DBusMenuAdaptor::EventGroup(const QList<DBusMenuEvent> &events)
{
    QList<int> unknown;
    for (const DBusMenuEvent &event : events) {
        if (!m_exporter->handleEvent(event.id, event.name))
            unknown << event.id;
    }
    return unknown;
}

bool DBusMenuAdaptor::AboutToShow(int id, const QDBusMessage &message)
{
    const auto changed = m_exporter->prepareToShow(id);
    if (!changed)
        refuse(message, id);
    return changed.value_or(false);
}

QList<int> DBusMenuAdaptor::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    QList<int> changed;
    for (const int id : ids) {
        const auto layoutChanged = m_exporter->prepareToShow(id);
        if (!layoutChanged)
            idErrors << id;
        else if (*layoutChanged)
            changed << id;
    }
    return changed;
}

void DBusMenuAdaptor::refuse(const QDBusMessage &message, int id) const
{
    message.setDelayedReply(true); // the answer below is the only one
    const QString reason = u"The menu has no such thing at item %1."_s.arg(id);
    m_exporter->bus().send(message.createErrorReply(QDBusError::InvalidArgs, reason));
}
