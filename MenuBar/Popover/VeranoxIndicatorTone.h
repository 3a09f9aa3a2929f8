#pragma once
#include "API/Values/VeranoxRuntimeStateIndicator.h"
#include "Controls/VeranoxTone.h"

// The tone that draws a colour of the indicator.
inline VeranoxTone::Tone toneOf(VeranoxRuntimeStateIndicator::Color color)
{
    using enum VeranoxRuntimeStateIndicator::Color;
    switch (color) {
    case faint:
        return VeranoxTone::FaintGray;
    case green:
        return VeranoxTone::Green;
    case orange:
        return VeranoxTone::Orange;
    case red:
        return VeranoxTone::Red;
    case secondary:
        break;
    }
    return VeranoxTone::Gray;
}
