#pragma once
#include "Platform/PaletteWatcher.h"
#include "Platform/SystemTheme.h"

// The theme of macOS, which Qt's palette follows. The menu bar takes the theme of the windows, and the system
// colours template images itself.
class MenuBarTheme : public SystemTheme {
    Q_OBJECT

public:
    explicit MenuBarTheme(QObject *parent = nullptr);

    bool isDark() const override { return PaletteWatcher::isDark(); }
    bool isPanelDark() const override { return isDark(); }
    bool colorsTemplateImages() const override { return true; }

private:
    PaletteWatcher m_palette;
};
