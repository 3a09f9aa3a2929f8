#pragma once
#include <QPoint>
#include <QRect>
#include <QSize>

// The side of the screen that the panel with the icon takes.
enum class PanelSide { top, bottom, left, right };

// The side of the screen that is nearest to the icon; without an icon, the one where a panel takes the most, and the
// top when none does. `free` is what panels leave of the screen. All in global coordinates.
PanelSide panelSide(const QRect &icon, const QRect &screen, const QRect &free);

// Where the upper left corner of a popover of that size stands: beside the icon, centred on it, on the side away from
// the panel, and wholly within what panels leave free. Without an icon it stands in the corner where icons usually are:
// the far end of the panel. A popover that is larger than the free part starts at its upper left corner.
QPoint popoverPosition(const QRect &icon, const QRect &free, PanelSide side, QSize popover);
