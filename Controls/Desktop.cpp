#include "Controls/Desktop.h"
#include "Platform/SystemTheme.h"
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QQmlEngine>

Desktop *Desktop::create(QQmlEngine *engine, QJSEngine *)
{
    auto *theme = engine->property(themeProperty).value<SystemTheme *>();
    if (!theme)
        qFatal("The engine does not know the desktop's theme.");
    return new Desktop(*theme); // the engine's
}

Desktop::Desktop(SystemTheme &theme, QObject *parent) : QObject(parent), m_theme(theme)
{
    connect(&m_theme, &SystemTheme::changed, this, &Desktop::changed);
}

bool Desktop::dark() const
{
    return m_theme.isDark();
}

bool Desktop::reducedMotion() const
{
    return m_theme.prefersReducedMotion();
}

QColor Desktop::accent() const
{
    return m_theme.accent().value_or(QColor());
}

QString Desktop::family() const
{
    return QGuiApplication::font().family();
}

QString Desktop::fixedFamily() const
{
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}
