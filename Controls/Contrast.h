#pragma once
#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

// Colours that stand out from each other, as the web accessibility guidelines measure it, for QML.
class Contrast final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Contrast)
    QML_SINGLETON

public:
    using QObject::QObject;

    // Between 1, the same, and 21, black and white.
    Q_INVOKABLE static double between(const QColor &one, const QColor &other);

    // The colour, made darker or lighter only so far that its contrast with the other reaches the ratio; black or white
    // when no shade of it does.
    Q_INVOKABLE static QColor reach(const QColor &color, const QColor &other, double ratio);
};
