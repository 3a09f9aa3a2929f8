#include "Base/Process/Utf8.h"
#include "Core/VeranoxOutputLines.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(OutputLines, table)
{
    struct Row {
        QByteArray output;
        QStringList lines;
    };
    const Row rows[] = {
        {"", {}},
        {"a\n\n  b  \n", {u"a"_s, u"b"_s}},
        {"a", {u"a"_s}},
        {"\n", {}},
        {" \t \r\n \n", {}},
        {"a\r\nb\rc", {u"a"_s, u"b"_s, u"c"_s}},
        {"a\vb\fc", {u"a"_s, u"b"_s, u"c"_s}},
        {"a\xC2\x85"
         "b\xE2\x80\xA8"
         "c\xE2\x80\xA9"
         "d",
            {u"a"_s, u"b"_s, u"c"_s, u"d"_s}},
        {"caf\xC3\xA9 \xF0\x9F\x98\x80\n", {u"café 😀"_s}},
        {QByteArray("a\0b\n", 4), {QString::fromUtf16(u"a\0b", 3)}},
        {"fine\n\xFF\nfine too\n", {}}, // one bad byte drops the whole
        {"fine\nhalf \xC3", {}},
        {"surrogate \xED\xA0\x80", {}},
        {"overlong \xC0\xAF", {}},
        {"beyond \xF4\x90\x80\x80", {}},
    };
    for (const auto &[output, lines] : rows)
        EXPECT_EQ(veranoxOutputLines(output), lines) << output.toPercentEncoding().toStdString();
}

TEST(OutputLines, unfinishedTail)
{
    struct Row {
        QByteArray bytes;
        qsizetype tail;
    };
    const Row rows[] = {
        {"", 0},
        {"a", 0},
        {"\xC3", 1},
        {"a\xC3", 1},
        {"a\xC3\xA9", 0},
        {"\xE2\x82", 2},
        {"\xE2\x82\xAC", 0},
        {"\xF0\x9F\x98", 3},
        {"\xF0\x9F\x98\x80", 0},
        {"\x80\x80\x80\x80", 0}, // continues nothing: not ours to mend
        {"\x80", 0},
    };
    for (const auto &[bytes, tail] : rows)
        EXPECT_EQ(unfinishedUtf8Tail(bytes), tail) << bytes.toHex().toStdString();
}

TEST(OutputLines, aCutAnywhereInATextIsMendedByItsTail)
{
    const QString text = u"aé€😀z"_s;
    const QByteArray whole = text.toUtf8();
    for (qsizetype cut = 0; cut <= whole.size(); ++cut) {
        const QByteArray head = whole.first(cut);
        const qsizetype tail = unfinishedUtf8Tail(head);
        const auto first = decodedUtf8(head.chopped(tail));
        const auto second = decodedUtf8(whole.sliced(cut - tail));
        ASSERT_TRUE(first && second) << cut;
        EXPECT_EQ(*first + *second, text);
    }
}
