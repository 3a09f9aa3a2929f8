#include "MenuBar/PopoverPlacement.h"
#include <algorithm>
#include <array>

namespace {

constexpr int gap = 4; // between icon and popover, and between popover and the edge of what is free

// The side with the smallest distance; the first of equals.
PanelSide nearest(const std::array<int, 4> &distances)
{
    return PanelSide(std::ranges::min_element(distances) - distances.begin());
}

int centred(int start, int length, int extent)
{
    return start + (length - extent) / 2;
}

int within(int wanted, int extent, int from, int length)
{
    return std::max(std::min(wanted, from + length - extent), from);
}

} // namespace

PanelSide panelSide(const QRect &icon, const QRect &screen, const QRect &free)
{
    if (icon.isEmpty()) // the larger the part taken, the nearer
        return nearest({screen.top() - free.top(), free.bottom() - screen.bottom(), screen.left() - free.left(),
            free.right() - screen.right()});
    return nearest({icon.top() - screen.top(), screen.bottom() - icon.bottom(), icon.left() - screen.left(),
        screen.right() - icon.right()});
}

QPoint popoverPosition(const QRect &icon, const QRect &free, PanelSide side, QSize popover)
{
    const QRect room = free.marginsRemoved({gap, gap, gap, gap});
    const bool isHorizontal = side == PanelSide::top || side == PanelSide::bottom;
    QPoint place;
    if (icon.isEmpty())
        place = {room.right() + 1 - popover.width(), isHorizontal ? room.top() : room.bottom() + 1 - popover.height()};
    else if (isHorizontal)
        place.setX(centred(icon.left(), icon.width(), popover.width()));
    else
        place.setY(centred(icon.top(), icon.height(), popover.height()));
    if (side == PanelSide::top)
        place.setY(icon.isEmpty() ? room.top() : icon.bottom() + 1 + gap);
    else if (side == PanelSide::bottom)
        place.setY((icon.isEmpty() ? room.bottom() + 1 : icon.top() - gap) - popover.height());
    else if (side == PanelSide::left)
        place.setX(icon.isEmpty() ? room.left() : icon.right() + 1 + gap);
    else
        place.setX((icon.isEmpty() ? room.right() + 1 : icon.left() - gap) - popover.width());
    return {within(place.x(), popover.width(), room.left(), room.width()),
        within(place.y(), popover.height(), room.top(), room.height())};
}
