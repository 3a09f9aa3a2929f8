#include "Platform/Linux/DBusMenu/DBusMenuProperties.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>

using namespace Qt::StringLiterals;

QString dbusMenuLabel(const QString &text)
{
    const QString title = text.section(u'\t', 0, 0);
    QString label;
    label.reserve(title.size() + 2);
    for (qsizetype i = 0; i < title.size(); ++i) {
        if (title[i] == u'_') {
            label += u"__"_s;
        } else if (title[i] != u'&') {
            label += title[i];
        } else if (i + 1 < title.size()) {
            ++i;
            label += title[i] == u'&' ? u"&"_s : title[i] == u'_' ? u"___"_s : u"_"_s + title[i];
        }
    }
    return label;
}

QVariantMap dbusMenuProperties(const QAction &action)
{
    // The flags are always told, although the protocol has defaults, so that a change back to a default is a plain
    // update.
    QVariantMap properties{{u"visible"_s, action.isVisible()}};
    if (action.isSeparator()) {
        properties[u"type"_s] = u"separator"_s;
        return properties;
    }
    properties[u"label"_s] = dbusMenuLabel(action.text());
    properties[u"enabled"_s] = action.isEnabled();
    if (action.isCheckable()) {
        const bool isOneOfSeveral = action.actionGroup() != nullptr && action.actionGroup()->isExclusive();
        properties[u"toggle-type"_s] = isOneOfSeveral ? u"radio"_s : u"checkmark"_s;
        properties[u"toggle-state"_s] = action.isChecked() ? 1 : 0;
    }
    if (action.menu<QMenu *>())
        properties[u"children-display"_s] = u"submenu"_s;
    return properties;
}

QVariantMap pickDBusMenuProperties(const QVariantMap &properties, const QStringList &names)
{
    if (names.isEmpty())
        return properties;
    QVariantMap picked;
    for (const QString &name : names) {
        if (properties.contains(name))
            picked[name] = properties[name];
    }
    return picked;
}
