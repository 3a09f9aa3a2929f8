#pragma once
#include <QLatin1StringView>
#include <QString>
#include <span>

// The icons and colours that a profile can have. Pure functions, any thread.
namespace VeranoxProfileAppearance {

struct Icon {
    QLatin1StringView identifier; // also the name of the symbol drawn
    QLatin1StringView title;
};

struct Color {
    QLatin1StringView identifier;
    QLatin1StringView title;
    quint32 light = 0; // 0xRRGGBB on a light background
    quint32 dark = 0; // 0xRRGGBB on a dark background
};

// In the order in which they are offered.
std::span<const Icon> icons();
std::span<const Color> colors();

// The known colour of that identifier, or none.
const Color *color(const QString &identifier);

// The icon if it is a known one, else one guessed from the profile's title.
QString knownIcon(const QString &icon, const QString &title);

// The colour's identifier if it is a known one, else one guessed from the profile's title.
QString knownColor(const QString &color, const QString &title);

} // namespace VeranoxProfileAppearance
