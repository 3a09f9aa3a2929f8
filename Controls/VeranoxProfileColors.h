#pragma once
#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

// The colours that profiles are told apart by, for QML.
class VeranoxProfileColors final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(ProfileColors)
    QML_SINGLETON

public:
    using QObject::QObject;

    // The colour of that identifier on a light or a dark background; gray for one that no colour has.
    Q_INVOKABLE static QColor color(const QString &identifier, bool dark);
};
