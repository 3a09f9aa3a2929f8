#include "Controls/VeranoxDesktop.h"
#include "Platform/SystemTheme.h"
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QQmlEngine>

VeranoxDesktop *VeranoxDesktop::create(QQmlEngine *engine, QJSEngine *)
{
    auto *theme = engine->property(themeProperty).value<SystemTheme *>();
    if (!theme)
        qFatal("The engine does not know the desktop's theme.");
    return new VeranoxDesktop(*theme); // the engine's
}

VeranoxDesktop::VeranoxDesktop(SystemTheme &theme, QObject *parent) : QObject(parent), m_theme(theme)
{
    connect(&m_theme, &SystemTheme::changed, this, &VeranoxDesktop::changed);
}

bool VeranoxDesktop::dark() const
{
    return m_theme.isDark();
}

bool VeranoxDesktop::reducedMotion() const
{
    return m_theme.prefersReducedMotion();
}

QColor VeranoxDesktop::accent() const
{
    return m_theme.accent().value_or(QColor());
}

QString VeranoxDesktop::family() const
{
    return QGuiApplication::font().family();
}

QString VeranoxDesktop::fixedFamily() const
{
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}
