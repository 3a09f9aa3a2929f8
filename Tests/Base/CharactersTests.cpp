#include "Base/Text/Characters.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RandomText.h"
#include <gtest/gtest.h>
#include <unigbrk.h>

using namespace Qt::StringLiterals;

namespace {

// A base letter with all that its script can hang on it, and what joins with nothing.
const QStringList consonants{u"न"_s, u"म"_s, u"स"_s, u"त"_s, u"क"_s, u"ক"_s, u"త"_s};
const QStringList linkers{u"\u094d"_s, u"\u09cd"_s, u"\u0c4d"_s};
const QStringList others{u"a"_s, u"7"_s, u" "_s, u"\r"_s, u"\n"_s, u"e\u0301"_s, u"\u0301"_s, u"\u0308"_s, u"े"_s,
    u"ि"_s, u"ി"_s, u"ำ"_s, u"ก"_s, u"👩"_s, u"👧"_s, u"\u200d"_s, u"🏽"_s, u"\ufe0f"_s, u"❤"_s, u"©"_s, u"🇩"_s, u"🇪"_s,
    u"ᄀ"_s, u"ᅡ"_s, u"ᆨ"_s, u"가"_s, u"각"_s, u"中"_s, u"\u0600"_s, u"\U000110BD"_s, u"ا"_s, u"\u064b"_s, u"\u200b"_s,
    u"\u00ad"_s, u"𝄞"_s, u"𐍈"_s};

bool isConsonant(QStringView text)
{
    return consonants.contains(text.toString());
}

// The linker joins two consonants, also when marks of a class of their own stand beside it.
bool isLinked(const QString &text, qsizetype at)
{
    bool linked = false;
    while (at > 0) {
        const QChar before = text[--at];
        if (isConsonant(text.sliced(at, 1)))
            return linked;
        const bool isLinker = linkers.contains(before);
        const bool isMark = before == QChar(0x200D) || (before.isMark() && before.combiningClass() != 0);
        if (!isLinker && !isMark)
            return false;
        linked |= isLinker;
    }
    return false;
}

// Where the characters end by another implementation, which lacks the rule for linked consonants.
QList<qsizetype> definedEnds(const QString &text)
{
    QByteArray breaks(text.size(), Qt::Uninitialized);
    u16_grapheme_breaks(
        reinterpret_cast<const uint16_t *>(text.utf16()), static_cast<std::size_t>(text.size()), breaks.data());
    QList<qsizetype> ends;
    for (qsizetype at = 1; at < text.size(); ++at) {
        if (breaks[at] != 0 && !(isConsonant(text.sliced(at, 1)) && isLinked(text, at)))
            ends.append(at);
    }
    ends.append(text.size());
    return ends;
}

TEST(Characters, AreCountedAsAPersonDoes)
{
    for (const QString &character : {u"x"_s, u"ä"_s, u"🙂"_s, u"e\u0301"_s, u"👩‍👩‍👧‍👦"_s, u"🇩🇪"_s,
             u"각"_s, u"न"_s, u"स्ते"_s, u"\r\n"_s, u"कि"_s}) {
        EXPECT_EQ(characters::endOfFirst(1, character + u'x'), character.size()) << qPrintable(character);
        EXPECT_EQ(characters::endOfFirst(2, u'x' + character + u'x'), character.size() + 1) << qPrintable(character);
        EXPECT_EQ(characters::endOfFirst(3, character.repeated(4)), 3 * character.size()) << qPrintable(character);
        EXPECT_FALSE(characters::exceed(4, character.repeated(4))) << qPrintable(character);
        EXPECT_TRUE(characters::exceed(3, character.repeated(4))) << qPrintable(character);
    }
}

TEST(Characters, OfAShortTextEndWithIt)
{
    EXPECT_EQ(characters::endOfFirst(0, u""), 0);
    EXPECT_EQ(characters::endOfFirst(5, u""), 0);
    EXPECT_EQ(characters::endOfFirst(0, u"abc"), 0);
    EXPECT_EQ(characters::endOfFirst(3, u"abc"), 3);
    EXPECT_EQ(characters::endOfFirst(9, u"abc"), 3);
    EXPECT_EQ(characters::endOfFirst(2, u"e\u0301\u0302"), 3);
    EXPECT_FALSE(characters::exceed(0, u""));
    EXPECT_TRUE(characters::exceed(0, u"a"));
}

TEST(Characters, AreThoseOfAnotherImplementationInMixedScripts)
{
    // Plain letters in front, often none, so that every way of beginning is met.
    const QStringList pieces = consonants + linkers + linkers + others;
    RandomText random(11);
    for (int round = 0; round < 20'000; ++round) {
        const QString text = QString(random.below(3), u'p') + random.oneOf(pieces) + random.of(pieces, 16);
        const QList<qsizetype> ends = definedEnds(text);
        for (qsizetype count = 1; count <= ends.size(); ++count)
            ASSERT_EQ(characters::endOfFirst(count, text), ends[count - 1])
                << count << " of " << qPrintable(text) << ' ' << text.toUtf8().toHex(' ').toStdString();
        ASSERT_FALSE(characters::exceed(ends.size(), text));
        ASSERT_TRUE(characters::exceed(ends.size() - 1, text));
    }
}

// Halves of pairs may come from anywhere; a whole pair is never cut.
TEST(Characters, NeverEndWithinASurrogatePair)
{
    const QStringList pieces =
        consonants + linkers + others + QStringList{QString(QChar(0xD83D)), QString(QChar(0xDC69))};
    RandomText random(12);
    for (int round = 0; round < 20'000; ++round) {
        const QString text = random.of(pieces, 24);
        for (qsizetype count = 0; count < text.size(); ++count) {
            const qsizetype end = characters::endOfFirst(count, text);
            ASSERT_FALSE(end > 0 && end < text.size() && text[end - 1].isHighSurrogate() && text[end].isLowSurrogate())
                << count << " of " << text.toUtf8().toHex(' ').toStdString();
        }
    }
}

} // namespace
