#pragma once
#include "Platform/Appearance.h"
#include "Platform/PaletteWatcher.h"

// The appearance of macOS, which Qt's palette follows. The menu bar takes the appearance of the windows, and the system
// colours template images itself.
class MenuBarAppearance : public Appearance {
    Q_OBJECT

public:
    explicit MenuBarAppearance(QObject *parent = nullptr);

    bool isDark() const override { return PaletteWatcher::isDark(); }
    bool isPanelDark() const override { return isDark(); }
    bool colorsTemplateImages() const override { return true; }

private:
    PaletteWatcher m_palette;
};
