#include "Platform/Linux/HotKey/KeySymbols.h"
#include <gtest/gtest.h>
#include <set>

using namespace Qt::StringLiterals;

TEST(KeySymbols, translateTheKeysOfThePresetsAndOfTheArrows)
{
    struct Row {
        std::uint32_t keyCode, keysym;
        QString name;
    };
    const QList<Row> rows{{43, ',', u"comma"_s}, {17, 't', u"t"_s}, {0, 'a', u"a"_s}, {29, '0', u"0"_s},
        {49, ' ', u"space"_s}, {36, 0xff0d, u"Return"_s}, {123, 0xff51, u"Left"_s}, {126, 0xff52, u"Up"_s},
        {111, 0xffc9, u"F12"_s}};
    for (const Row &row : rows) {
        const auto symbol = keySymbol(row.keyCode);
        ASSERT_TRUE(symbol) << row.keyCode;
        EXPECT_EQ(symbol->keysym, row.keysym) << row.keyCode;
        EXPECT_EQ(symbol->name, row.name) << row.keyCode;
    }
}

TEST(KeySymbols, guessNothing)
{
    for (const std::uint32_t keyCode : {10U, 52U, 54U, 127U, 128U, 0xffffffffU})
        EXPECT_FALSE(keySymbol(keyCode)) << keyCode;
}

TEST(KeySymbols, areDifferentForEachKey)
{
    std::set<std::uint32_t> seen;
    int keys = 0;
    for (std::uint32_t keyCode = 0; keyCode < 128; ++keyCode) {
        if (const auto symbol = keySymbol(keyCode)) {
            ++keys;
            seen.insert(symbol->keysym);
        }
    }
    EXPECT_EQ(keys, 26 + 10 + 11 + 14 + 12); // letters, digits, punctuation, named keys, function keys
    EXPECT_EQ(int(seen.size()), keys);
}

TEST(KeySymbols, translateModifiersByATable)
{
    EXPECT_EQ(x11Modifiers(0), 0);
    EXPECT_EQ(x11Modifiers(VeranoxGlobalShortcut::command), 64);
    EXPECT_EQ(x11Modifiers(VeranoxGlobalShortcut::shift), 1);
    EXPECT_EQ(x11Modifiers(VeranoxGlobalShortcut::option), 8);
    EXPECT_EQ(x11Modifiers(VeranoxGlobalShortcut::control), 4);
    EXPECT_EQ(x11Modifiers(6400), 4 | 8 | 64);
    EXPECT_EQ(x11Modifiers(1U << 20), 0);
}

TEST(KeySymbols, giveThePortalItsTriggers)
{
    const auto trigger = [](std::uint32_t keyCode, std::uint32_t modifiers) {
        return portalTrigger({u"custom"_s, {}, keyCode, modifiers});
    };
    EXPECT_EQ(trigger(43, 2304), u"ALT+LOGO+comma"_s);
    EXPECT_EQ(trigger(17, 6400), u"CTRL+ALT+LOGO+t"_s);
    EXPECT_EQ(trigger(123, 512), u"SHIFT+Left"_s);
    EXPECT_FALSE(trigger(127, 256));
}
