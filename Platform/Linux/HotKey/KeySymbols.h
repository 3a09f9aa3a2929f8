#pragma once
#include "System/VeranoxGlobalShortcut.h"
#include <QString>
#include <cstdint>
#include <optional>

// A shortcut's virtual key code and modifiers in the terms of Linux desktops. Key codes name positions on a US
// keyboard; what stands there on a US layout is looked for on the layout in use.
struct KeySymbol {
    std::uint32_t keysym = 0; // X11's number; of a printing character, its Latin-1 code
    QString name; // as XKB names the key, which desktop portals take as well
};

// The symbol of a virtual key code; nothing for a key that has none here.
std::optional<KeySymbol> keySymbol(std::uint32_t keyCode);

// X11's modifier mask for Carbon's bits: command is Super, option is Alt.
std::uint16_t x11Modifiers(std::uint32_t carbonModifiers);

// The text that portals take as a preferred trigger, for example "CTRL+ALT+comma"; nothing when the key has no symbol.
std::optional<QString> portalTrigger(const VeranoxGlobalShortcut &shortcut);
