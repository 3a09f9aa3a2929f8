#include "Platform/Linux/HotKey/KeySymbols.h"
#include <QHash>
#include <xcb/xproto.h>

using namespace Qt::StringLiterals;

namespace {

struct Row {
    std::uint32_t keyCode;
    std::uint32_t keysym;
    const char *name;
};

// The letters, digits and punctuation of a US keyboard stand for themselves; the others carry X11's numbers.
constexpr Row rows[] = {
    {0, 'a', "a"},
    {1, 's', "s"},
    {2, 'd', "d"},
    {3, 'f', "f"},
    {4, 'h', "h"},
    {5, 'g', "g"},
    {6, 'z', "z"},
    {7, 'x', "x"},
    {8, 'c', "c"},
    {9, 'v', "v"},
    {11, 'b', "b"},
    {12, 'q', "q"},
    {13, 'w', "w"},
    {14, 'e', "e"},
    {15, 'r', "r"},
    {16, 'y', "y"},
    {17, 't', "t"},
    {31, 'o', "o"},
    {32, 'u', "u"},
    {34, 'i', "i"},
    {35, 'p', "p"},
    {37, 'l', "l"},
    {38, 'j', "j"},
    {40, 'k', "k"},
    {45, 'n', "n"},
    {46, 'm', "m"},
    {18, '1', "1"},
    {19, '2', "2"},
    {20, '3', "3"},
    {21, '4', "4"},
    {22, '6', "6"},
    {23, '5', "5"},
    {25, '9', "9"},
    {26, '7', "7"},
    {28, '8', "8"},
    {29, '0', "0"},
    {24, '=', "equal"},
    {27, '-', "minus"},
    {30, ']', "bracketright"},
    {33, '[', "bracketleft"},
    {39, '\'', "apostrophe"},
    {41, ';', "semicolon"},
    {42, '\\', "backslash"},
    {43, ',', "comma"},
    {44, '/', "slash"},
    {47, '.', "period"},
    {50, '`', "grave"},
    {36, 0xff0d, "Return"},
    {48, 0xff09, "Tab"},
    {49, ' ', "space"},
    {51, 0xff08, "BackSpace"},
    {53, 0xff1b, "Escape"},
    {117, 0xffff, "Delete"},
    {115, 0xff50, "Home"},
    {119, 0xff57, "End"},
    {116, 0xff55, "Page_Up"},
    {121, 0xff56, "Page_Down"},
    {123, 0xff51, "Left"},
    {124, 0xff53, "Right"},
    {125, 0xff54, "Down"},
    {126, 0xff52, "Up"},
    {122, 0xffbe, "F1"},
    {120, 0xffbf, "F2"},
    {99, 0xffc0, "F3"},
    {118, 0xffc1, "F4"},
    {96, 0xffc2, "F5"},
    {97, 0xffc3, "F6"},
    {98, 0xffc4, "F7"},
    {100, 0xffc5, "F8"},
    {101, 0xffc6, "F9"},
    {109, 0xffc7, "F10"},
    {103, 0xffc8, "F11"},
    {111, 0xffc9, "F12"},
};

} // namespace

std::optional<KeySymbol> keySymbol(std::uint32_t keyCode)
{
    for (const Row &row : rows) {
        if (row.keyCode == keyCode)
            return KeySymbol{row.keysym, QString::fromLatin1(row.name)};
    }
    return std::nullopt;
}

std::uint16_t x11Modifiers(std::uint32_t carbonModifiers)
{
    using Shortcut = VeranoxGlobalShortcut;
    std::uint32_t mask = 0;
    if (carbonModifiers & Shortcut::command)
        mask |= XCB_MOD_MASK_4;
    if (carbonModifiers & Shortcut::shift)
        mask |= XCB_MOD_MASK_SHIFT;
    if (carbonModifiers & Shortcut::option)
        mask |= XCB_MOD_MASK_1;
    if (carbonModifiers & Shortcut::control)
        mask |= XCB_MOD_MASK_CONTROL;
    return static_cast<std::uint16_t>(mask);
}

std::optional<QString> portalTrigger(const VeranoxGlobalShortcut &shortcut)
{
    using Shortcut = VeranoxGlobalShortcut;
    const auto symbol = keySymbol(shortcut.keyCode);
    if (!symbol)
        return std::nullopt;
    QString trigger;
    if (shortcut.carbonModifiers & Shortcut::control)
        trigger += u"CTRL+"_s;
    if (shortcut.carbonModifiers & Shortcut::option)
        trigger += u"ALT+"_s;
    if (shortcut.carbonModifiers & Shortcut::shift)
        trigger += u"SHIFT+"_s;
    if (shortcut.carbonModifiers & Shortcut::command)
        trigger += u"LOGO+"_s;
    return trigger + symbol->name;
}
