#include "API/Values/VeranoxProfileAppearance.h"
#include "Tests/Support/QtPrinters.h"
#include <QSet>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
namespace appearance = VeranoxProfileAppearance;

TEST(VeranoxProfileAppearance, OffersItsIconsInOrder)
{
    QStringList titles;
    QSet<QString> identifiers;
    for (const auto &icon : appearance::icons()) {
        titles.append(icon.title);
        identifiers.insert(icon.identifier);
    }
    EXPECT_EQ(titles.join(u' '),
        u"Work Company Personal Home Laptop Desktop Server Storage Network Wi-Fi Signal Global Cloud Secure Locked "
        "Access Power Flame Eco Star Flag Settings");
    EXPECT_EQ(identifiers.size(), 22);
}

TEST(VeranoxProfileAppearance, OffersItsColoursInOrder)
{
    QStringList identifiers;
    QSet<quint32> lights;
    for (const auto &color : appearance::colors()) {
        identifiers.append(color.identifier);
        EXPECT_EQ(QString(color.title).toLower(), color.identifier);
        EXPECT_LE(color.light, 0xFFFFFFU);
        EXPECT_LE(color.dark, 0xFFFFFFU);
        lights.insert(color.light);
    }
    EXPECT_EQ(identifiers.join(u' '), u"red orange yellow green mint teal cyan blue indigo purple pink brown gray");
    EXPECT_EQ(lights.size(), 13);
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
    for (const auto &icon : appearance::icons())
        EXPECT_EQ(appearance::knownIcon(icon.identifier, u"Work"_s), icon.identifier);
    for (const auto &color : appearance::colors())
        EXPECT_EQ(appearance::knownColor(color.identifier, u"Work"_s), color.identifier);
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
