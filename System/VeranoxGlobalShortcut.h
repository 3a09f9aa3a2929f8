#pragma once
#include <QList>
#include <QString>
#include <cstdint>
#include <optional>

// A key combination that works wherever the focus is. Key codes are the virtual key codes of a Mac keyboard, which name
// positions on a US layout; modifiers are Carbon's bits. Other systems translate both.
struct VeranoxGlobalShortcut {
    static constexpr std::uint32_t command = 256;
    static constexpr std::uint32_t shift = 512;
    static constexpr std::uint32_t option = 2048;
    static constexpr std::uint32_t control = 4096;

    QString id;
    QString title; // as a person reads it, for example ⌥⌘,
    std::uint32_t keyCode = 0;
    std::uint32_t carbonModifiers = 0;

    // The combinations that are offered, in the order of the menu.
    static const QList<VeranoxGlobalShortcut> &presets();

    // The preset with that id.
    static std::optional<VeranoxGlobalShortcut> shortcut(const QString &id);

    bool operator==(const VeranoxGlobalShortcut &) const = default;
};
