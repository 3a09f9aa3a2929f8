#include "MenuBar/Mark/VeranoxMenuBarMark.h"

#include <algorithm>

namespace {

const QColor brandGreen = QColor::fromRgbF(0.3058823529f, 0.7882352941f, 0.5607843137f);
const QColor brandRed = QColor::fromRgbF(0.8980392157f, 0.3294117647f, 0.2941176471f);
const QColor notDrawn;

QColor faded(QColor color, double strength)
{
    color.setAlphaF(static_cast<float>(std::clamp(strength, 0.0, 1.0)));
    return color;
}

} // namespace

VeranoxMenuBarMark<QColor> veranoxMenuBarColors(
    MenuBarIcon icon, double pulse, const QColor &foreground, const QColor &ink)
{
    const auto fg = [&](double strength) { return faded(foreground, strength); };
    const auto black = [&](double strength) { return faded(ink, strength); };
    // clang-format off
    switch (icon) { //              input        branchUp     branchDown   node         live         muted         badge
    case MenuBarIcon::normal:
        return                    { fg(1),       fg(1),       fg(0.35),    brandGreen,  fg(0.35),    fg(1),        notDrawn };
    case MenuBarIcon::offline:
        return                    { black(0.55), black(0.55), black(0.3),  black(0.55), black(0.3),  black(0.55),  notDrawn };
    case MenuBarIcon::starting:
        return                    { black(0.45), black(0.45), black(0.3),  black(0.45), black(0.3),  black(pulse), notDrawn };
    case MenuBarIcon::attention:
        return                    { fg(1),       fg(1),       fg(0.35),    fg(0.35),    fg(0.35),    fg(1),        brandRed };
    case MenuBarIcon::failed:
        return                    { fg(0.45),    fg(0.45),    fg(0.27),    fg(0.27),    fg(0.27),    brandRed,     brandRed };
    }
    // clang-format on
    Q_UNREACHABLE();
}

bool isVeranoxMenuBarTemplate(MenuBarIcon icon)
{
    return icon == MenuBarIcon::offline || icon == MenuBarIcon::starting;
}
