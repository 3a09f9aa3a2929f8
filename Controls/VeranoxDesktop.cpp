#include "Controls/VeranoxDesktop.h"
#include "Platform/Appearance.h"
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QQmlEngine>

VeranoxDesktop *VeranoxDesktop::create(QQmlEngine *engine, QJSEngine *)
{
    auto *appearance = engine->property(appearanceProperty).value<Appearance *>();
    if (!appearance)
        qFatal("The engine does not know the desktop's appearance.");
    return new VeranoxDesktop(*appearance); // the engine's
}

VeranoxDesktop::VeranoxDesktop(Appearance &appearance, QObject *parent) : QObject(parent), m_appearance(appearance)
{
    connect(&m_appearance, &Appearance::changed, this, &VeranoxDesktop::changed);
}

bool VeranoxDesktop::dark() const
{
    return m_appearance.isDark();
}

bool VeranoxDesktop::reducedMotion() const
{
    return m_appearance.prefersReducedMotion();
}

QColor VeranoxDesktop::accent() const
{
    return m_appearance.accent().value_or(QColor());
}

QString VeranoxDesktop::family() const
{
    return QGuiApplication::font().family();
}

QString VeranoxDesktop::fixedFamily() const
{
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}
