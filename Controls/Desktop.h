#pragma once
#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

class SystemTheme;
class QJSEngine;
class QQmlEngine;

// What the desktop asks of every window, live, for QML. One for each engine.
class Desktop final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Desktop)
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    Q_PROPERTY(QString family READ family CONSTANT)
    Q_PROPERTY(QString fixedFamily READ fixedFamily CONSTANT)

public:
    // The property of the engine that holds the SystemTheme.
    static constexpr const char *themeProperty = "veranoxTheme";

    static Desktop *create(QQmlEngine *engine, QJSEngine *);

    // The theme outlives the engine.
    explicit Desktop(SystemTheme &theme, QObject *parent = nullptr);

    bool dark() const;
    bool reducedMotion() const;
    QColor accent() const; // invalid where the desktop has none
    QString family() const; // the desktop's font for everything
    QString fixedFamily() const; // the desktop's font with letters of one width

Q_SIGNALS:
    void changed();

private:
    SystemTheme &m_theme;
};
