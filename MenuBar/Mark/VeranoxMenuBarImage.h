#pragma once
#include "Core/MenuBarIcon.h"
#include <QColor>
#include <QIcon>
#include <optional>

class SystemTheme;

// Draws the icon of the menu bar. Main thread only.
class VeranoxMenuBarImage {
public:
    // The mark for a state of the system, 21 by 18 points in the middle of a square of 22, drawn sharp at whatever size
    // it is asked for. `pulse`, from 0 to 1, counts for `starting` only. Template images are masks where the system
    // colours them, and drawn in the panel's own colour elsewhere. `offline` is drawn once per colour and kept.
    QIcon image(MenuBarIcon icon, double pulse, const SystemTheme &theme);

private:
    struct Kept {
        QColor ink;
        QIcon image;
    };
    std::optional<Kept> m_offline;
};
