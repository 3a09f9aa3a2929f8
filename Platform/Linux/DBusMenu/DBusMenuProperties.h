#pragma once
#include <QString>
#include <QVariantMap>

class QAction;

// A label as com.canonical.dbusmenu writes it: "_" marks the access key where Qt has "&", "__" is one underscore, and
// the shortcut that Qt puts behind a tab is left out.
QString dbusMenuLabel(const QString &text);

// What a panel must know to draw the action.
QVariantMap dbusMenuProperties(const QAction &action);

// The properties that the names ask for; all of them for an empty list.
QVariantMap pickDBusMenuProperties(const QVariantMap &properties, const QStringList &names);
