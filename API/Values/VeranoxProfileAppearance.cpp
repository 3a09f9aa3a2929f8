#include "API/Values/VeranoxProfileAppearance.h"
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace VeranoxProfileAppearance {

namespace {

constexpr std::array knownIcons{
    Icon{"briefcase.fill"_L1, "Work"_L1},
    Icon{"building.2.fill"_L1, "Company"_L1},
    Icon{"person.crop.circle.fill"_L1, "Personal"_L1},
    Icon{"house.fill"_L1, "Home"_L1},
    Icon{"laptopcomputer"_L1, "Laptop"_L1},
    Icon{"desktopcomputer"_L1, "Desktop"_L1},
    Icon{"server.rack"_L1, "Server"_L1},
    Icon{"externaldrive.fill"_L1, "Storage"_L1},
    Icon{"network"_L1, "Network"_L1},
    Icon{"wifi"_L1, "Wi-Fi"_L1},
    Icon{"antenna.radiowaves.left.and.right"_L1, "Signal"_L1},
    Icon{"globe.americas.fill"_L1, "Global"_L1},
    Icon{"cloud.fill"_L1, "Cloud"_L1},
    Icon{"shield.fill"_L1, "Secure"_L1},
    Icon{"lock.fill"_L1, "Locked"_L1},
    Icon{"key.fill"_L1, "Access"_L1},
    Icon{"bolt.fill"_L1, "Power"_L1},
    Icon{"flame.fill"_L1, "Flame"_L1},
    Icon{"leaf.fill"_L1, "Eco"_L1},
    Icon{"star.fill"_L1, "Star"_L1},
    Icon{"flag.fill"_L1, "Flag"_L1},
    Icon{"gearshape.fill"_L1, "Settings"_L1},
};

constexpr std::array knownColors{
    Color{"red"_L1, "Red"_L1, 0xFF3B30, 0xFF453A},
    Color{"orange"_L1, "Orange"_L1, 0xFF9500, 0xFF9F0A},
    Color{"yellow"_L1, "Yellow"_L1, 0xFFCC00, 0xFFD60A},
    Color{"green"_L1, "Green"_L1, 0x34C759, 0x30D158},
    Color{"mint"_L1, "Mint"_L1, 0x00C7BE, 0x63E6E2},
    Color{"teal"_L1, "Teal"_L1, 0x30B0C7, 0x40C8E0},
    Color{"cyan"_L1, "Cyan"_L1, 0x32ADE6, 0x64D2FF},
    Color{"blue"_L1, "Blue"_L1, 0x007AFF, 0x0A84FF},
    Color{"indigo"_L1, "Indigo"_L1, 0x5856D6, 0x5E5CE6},
    Color{"purple"_L1, "Purple"_L1, 0xAF52DE, 0xBF5AF2},
    Color{"pink"_L1, "Pink"_L1, 0xFF2D55, 0xFF375F},
    Color{"brown"_L1, "Brown"_L1, 0xA2845E, 0xAC8E68},
    Color{"gray"_L1, "Gray"_L1, 0x8E8E93, 0x8E8E93},
};

bool isWork(const QString &title)
{
    return title.contains("work"_L1, Qt::CaseInsensitive);
}

} // namespace

std::span<const Icon> icons()
{
    return knownIcons;
}

std::span<const Color> colors()
{
    return knownColors;
}

const Color *color(const QString &identifier)
{
    const auto found = std::ranges::find(knownColors, identifier, &Color::identifier);
    return found == knownColors.end() ? nullptr : &*found;
}

QString knownIcon(const QString &icon, const QString &title)
{
    const bool isKnown = std::ranges::find(knownIcons, icon, &Icon::identifier) != knownIcons.end();
    if (isKnown)
        return icon;
    return isWork(title) ? u"briefcase.fill"_s : u"building.2.fill"_s;
}

QString knownColor(const QString &identifier, const QString &title)
{
    if (color(identifier))
        return identifier;
    return isWork(title) ? u"green"_s : u"teal"_s;
}

} // namespace VeranoxProfileAppearance
