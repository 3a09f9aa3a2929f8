#include "Log/VeranoxRuntimeLogLine.h"
#include "Log/VeranoxRuntimeLogRedactor.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RandomText.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Line = VeranoxRuntimeLogLine;
const QString mark = u" \u2026 [truncated]"_s;

QStringList split(const QString &text)
{
    QStringList lines;
    for (const QStringView line : Line::split(text))
        lines.append(line.toString());
    return lines;
}

TEST(LogLine, SplitsAtEveryLineEnd)
{
    for (const char16_t end : {u'\n', u'\r', u'\v', u'\f', u'\u0085', u'\u2028', u'\u2029'})
        EXPECT_EQ(split(u"a"_s + QChar(end) + u"b"_s), (QStringList{u"a"_s, u"b"_s})) << int(end);
    EXPECT_EQ(split(u"a\r\nb"_s), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(split(u"a\tb\u001c"_s), (QStringList{u"a\tb\u001c"_s}));
}

TEST(LogLine, TrimsPiecesAndLeavesOutEmptyOnes)
{
    EXPECT_EQ(split(u"a\n\nb"_s), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(split(u" \u00a0 a b \u3000\t\n  \n"_s), (QStringList{u"a b"_s}));
    EXPECT_EQ(split(u" \n\t\r\n "_s), QStringList());
    EXPECT_EQ(split(QString()), QStringList());
}

TEST(LogLine, KeepsALineOfExactlyTheLongestLength)
{
    const QString whole(16384, u'x');
    EXPECT_EQ(Line::truncated(whole), whole);
    EXPECT_EQ(Line::truncated(whole + u'x'), whole + mark);
    EXPECT_EQ(Line::truncated(QString(20000, u'x')), whole + mark);
    EXPECT_EQ(Line::truncated(QString()), QString());
}

// A character of each kind that takes more than one code unit.
TEST(LogLine, CountsCharactersAsAPersonDoes)
{
    for (const QString &character : {u"🙂"_s, u"e\u0301"_s, u"👩‍👩‍👧‍👦"_s, u"🇩🇪"_s, u"각"_s}) {
        const QString whole = character.repeated(16384);
        EXPECT_EQ(Line::truncated(whole), whole) << qPrintable(character);
        EXPECT_EQ(Line::truncated(whole + u'x'), whole + mark) << qPrintable(character);
        EXPECT_EQ(Line::truncated(whole + character), whole + mark) << qPrintable(character);
    }
}

TEST(LogLine, CutsMixedScriptsBetweenTwoCharacters)
{
    const QString piece = u"नमस्ते👩"_s; // four of them
    EXPECT_EQ(Line::truncated(piece.repeated(4096)), piece.repeated(4096));
    EXPECT_EQ(Line::truncated(piece.repeated(5000)), piece.repeated(4096) + mark);
    QString before;
    for (const QString &rest : {u"नमस्ते"_s, u"नम"_s, u"न"_s}) {
        before += u'x';
        EXPECT_EQ(Line::truncated(before + piece.repeated(5000)), before + piece.repeated(4095) + rest + mark);
    }
}

TEST(LogLine, LetsNoHalfOfASurrogatePairThrough)
{
    const QStringList pieces{u"नमस्ते"_s, u"👩"_s, u"👩‍👩‍👧‍👦"_s, u"🇩🇪"_s, u"e\u0301"_s, u"각"_s,
        u"กำ"_s, u"plain"_s, u"中文"_s, u"𝄞"_s, u"\U000110BDa"_s, QString(QChar(0xD83D)), QString(QChar(0xDC69))};
    RandomText random(7);
    int cut = 0;
    for (int round = 0; round < 40; ++round) {
        QString text;
        while (text.size() < 50'000)
            text += random.oneOf(pieces).repeated(1 + random.below(50));
        const QString shown = Line::truncated(VeranoxRuntimeLogRedactor::redact(text));
        ASSERT_TRUE(shown.isValidUtf16()) << round;
        ASSERT_EQ(QString::fromUtf8(shown.toUtf8()), shown) << round;
        cut += shown.endsWith(mark);
    }
    EXPECT_GT(cut, 20);
}

TEST(LogLine, DoesNotCutOneEndlessCharacter)
{
    const QString accents(300'000, QChar(0x0301));
    EXPECT_EQ(Line::truncated(u"e"_s + accents), u"e"_s + accents);
    EXPECT_EQ(Line::truncated(QString(16383, u'x') + u"e"_s + accents + u'f'),
        QString(16383, u'x') + u"e"_s + accents + mark);
}

TEST(LogLine, InfersTheComponentFromItsVeryStart)
{
    EXPECT_EQ(Line::component(u"[PAC] x"), u"pac"_s);
    EXPECT_EQ(Line::component(u"[GUI] x"), u"local_service"_s);
    EXPECT_EQ(Line::component(u"[Router] x"), u"router"_s);
    EXPECT_EQ(Line::component(u"[APP] x"), u"macos_app"_s);
    for (const QStringView other : {u"", u"x", u" [APP]", u"[app]", u"[ROUTER]", u"[APP", u"x [PAC]"})
        EXPECT_EQ(Line::component(other), u"system"_s) << qPrintable(other.toString());
}

} // namespace
