#include "API/Values/VeranoxProfileAppearance.h"
#include "Controls/Symbols.h"
#include "Tests/Support/QtPrinters.h"
#include <QFont>
#include <QRawFont>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Symbols, haveAGlyphForEachIconThatAProfileCanHave)
{
    const Symbols symbols;
    const QRawFont font = QRawFont::fromFont(QFont(symbols.family()));
    for (const auto &icon : VeranoxProfileAppearance::icons()) {
        const QString glyph = Symbols::glyph(icon.identifier);
        ASSERT_FALSE(glyph.isEmpty()) << icon.identifier.data();
        EXPECT_NE(font.glyphIndexesForString(glyph).value(0), 0U) << icon.identifier.data();
    }
}

TEST(Symbols, knowNoOtherNames)
{
    EXPECT_EQ(Symbols::glyph(u""_s), QString());
    EXPECT_EQ(Symbols::glyph(u"aaa"_s), QString());
    EXPECT_EQ(Symbols::glyph(u"arrow.clockwise "_s), QString());
    EXPECT_EQ(Symbols::glyph(u"zzz"_s), QString());
}

TEST(Symbols, comeFromTheEmbeddedFont)
{
    EXPECT_EQ(Symbols().family(), u"Veranox Symbols"_s);
}
