#include "API/Values/VeranoxProfileAppearance.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
namespace appearance = VeranoxProfileAppearance;

namespace {

const appearance::Icon icons[] = {
    {"briefcase.fill"_L1, "Work"_L1},
    {"building.2.fill"_L1, "Company"_L1},
    {"person.crop.circle.fill"_L1, "Personal"_L1},
    {"house.fill"_L1, "Home"_L1},
    {"laptopcomputer"_L1, "Laptop"_L1},
    {"desktopcomputer"_L1, "Desktop"_L1},
    {"server.rack"_L1, "Server"_L1},
    {"externaldrive.fill"_L1, "Storage"_L1},
    {"network"_L1, "Network"_L1},
    {"wifi"_L1, "Wi-Fi"_L1},
    {"antenna.radiowaves.left.and.right"_L1, "Signal"_L1},
    {"globe.americas.fill"_L1, "Global"_L1},
    {"cloud.fill"_L1, "Cloud"_L1},
    {"shield.fill"_L1, "Secure"_L1},
    {"lock.fill"_L1, "Locked"_L1},
    {"key.fill"_L1, "Access"_L1},
    {"bolt.fill"_L1, "Power"_L1},
    {"flame.fill"_L1, "Flame"_L1},
    {"leaf.fill"_L1, "Eco"_L1},
    {"star.fill"_L1, "Star"_L1},
    {"flag.fill"_L1, "Flag"_L1},
    {"gearshape.fill"_L1, "Settings"_L1},
};

const appearance::Color colors[] = {
    {"red"_L1, "Red"_L1, 0xFF3B30, 0xFF453A},
    {"orange"_L1, "Orange"_L1, 0xFF9500, 0xFF9F0A},
    {"yellow"_L1, "Yellow"_L1, 0xFFCC00, 0xFFD60A},
    {"green"_L1, "Green"_L1, 0x34C759, 0x30D158},
    {"mint"_L1, "Mint"_L1, 0x00C7BE, 0x63E6E2},
    {"teal"_L1, "Teal"_L1, 0x30B0C7, 0x40C8E0},
    {"cyan"_L1, "Cyan"_L1, 0x32ADE6, 0x64D2FF},
    {"blue"_L1, "Blue"_L1, 0x007AFF, 0x0A84FF},
    {"indigo"_L1, "Indigo"_L1, 0x5856D6, 0x5E5CE6},
    {"purple"_L1, "Purple"_L1, 0xAF52DE, 0xBF5AF2},
    {"pink"_L1, "Pink"_L1, 0xFF2D55, 0xFF375F},
    {"brown"_L1, "Brown"_L1, 0xA2845E, 0xAC8E68},
    {"gray"_L1, "Gray"_L1, 0x8E8E93, 0x8E8E93},
};

} // namespace

TEST(VeranoxProfileAppearance, OffersItsIconsInOrder)
{
    ASSERT_EQ(appearance::icons().size(), std::size(icons));
    for (std::size_t i = 0; i < std::size(icons); ++i) {
        EXPECT_EQ(appearance::icons()[i].identifier, icons[i].identifier);
        EXPECT_EQ(appearance::icons()[i].title, icons[i].title);
    }
}

TEST(VeranoxProfileAppearance, OffersItsColoursInOrder)
{
    ASSERT_EQ(appearance::colors().size(), std::size(colors));
    for (std::size_t i = 0; i < std::size(colors); ++i) {
        EXPECT_EQ(appearance::colors()[i].identifier, colors[i].identifier);
        EXPECT_EQ(appearance::colors()[i].title, colors[i].title);
        EXPECT_EQ(appearance::colors()[i].light, colors[i].light) << colors[i].title.data();
        EXPECT_EQ(appearance::colors()[i].dark, colors[i].dark) << colors[i].title.data();
    }
}

TEST(VeranoxProfileAppearance, FindsAColour)
{
    ASSERT_NE(appearance::color(u"teal"_s), nullptr);
    EXPECT_EQ(appearance::color(u"teal"_s)->light, 0x30B0C7U);
    EXPECT_EQ(appearance::color(u"Teal"_s), nullptr);
    EXPECT_EQ(appearance::color(u""_s), nullptr);
}

TEST(VeranoxProfileAppearance, KeepsWhatIsKnown)
{
    for (const QString &title : {u"Work"_s, u"Home"_s}) { // for either of which another one would be guessed
        for (const auto &icon : icons)
            EXPECT_EQ(appearance::knownIcon(icon.identifier, title), icon.identifier);
        for (const auto &color : colors)
            EXPECT_EQ(appearance::knownColor(color.identifier, title), color.identifier);
    }
}

TEST(VeranoxProfileAppearance, GuessesTheRestFromTheTitle)
{
    for (const QString &title : {u"work"_s, u"My WoRk"_s, u"networks"_s}) {
        EXPECT_EQ(appearance::knownIcon(u"x"_s, title), u"briefcase.fill");
        EXPECT_EQ(appearance::knownColor(u"x"_s, title), u"green");
    }
    for (const QString &title : {u""_s, u"Home"_s, u"wor k"_s}) {
        EXPECT_EQ(appearance::knownIcon({}, title), u"building.2.fill");
        EXPECT_EQ(appearance::knownColor({}, title), u"teal");
    }
}
