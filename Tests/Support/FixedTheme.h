#pragma once
#include "Platform/SystemTheme.h"

// A theme that a test sets.
class FixedTheme : public SystemTheme {
public:
    explicit FixedTheme(bool isDark, bool colorsTemplates = false)
        : m_isDark(isDark),
          m_colorsTemplates(colorsTemplates)
    {
    }

    bool isDark() const override { return m_isDark; }
    bool isPanelDark() const override { return m_isDark; }
    bool colorsTemplateImages() const override { return m_colorsTemplates; }
    bool prefersReducedMotion() const override { return m_reducedMotion; }

    std::optional<QColor> accent() const override { return m_accent; }

    void setDark(bool isDark)
    {
        m_isDark = isDark;
        Q_EMIT changed();
    }
    void setReducedMotion(bool on)
    {
        m_reducedMotion = on;
        Q_EMIT changed();
    }
    void setAccent(const std::optional<QColor> &accent)
    {
        m_accent = accent;
        Q_EMIT changed();
    }

private:
    bool m_isDark;
    bool m_colorsTemplates;
    bool m_reducedMotion = false;
    std::optional<QColor> m_accent;
};
