#include "Controls/Contrast.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int steps = 100;

double linear(double part)
{
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(static_cast<double>(color.redF())) + 0.7152 * linear(static_cast<double>(color.greenF()))
        + 0.0722 * linear(static_cast<double>(color.blueF()));
}

QColor shade(const QColor &color, float lightness)
{
    return QColor::fromHslF(std::max(color.hslHueF(), 0.0F), color.hslSaturationF(), lightness, color.alphaF()).toRgb();
}

} // namespace

double Contrast::between(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor Contrast::reach(const QColor &color, const QColor &other, double ratio)
{
    if (between(color, other) >= ratio)
        return color;
    const float from = color.lightnessF();
    const float end = between(Qt::black, other) > between(Qt::white, other) ? 0.0F : 1.0F;
    for (int step = 1; step < steps; ++step) {
        const QColor candidate =
            shade(color, from + (end - from) * static_cast<float>(step) / static_cast<float>(steps));
        if (between(candidate, other) >= ratio)
            return candidate;
    }
    return end > 0 ? Qt::white : Qt::black;
}
