#include "API/Client/VeranoxURLEncoding.h"
#include "Tests/Support/QtPrinters.h"
#include <QUrl>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
struct Row {
    QString text;
    QString path;
    QString query;
};
const QString unpairedHalf = QString(QChar(0xd800)) + u'a';
const Row rows[] = {
    // text, as a part of a path, as a value in a query
    {u""_s, u""_s, u""_s},
    {u"abcXYZ019"_s, u"abcXYZ019"_s, u"abcXYZ019"_s},
    {u"-._~"_s, u"-._~"_s, u"-._~"_s},
    {u"!$&'()*+,:=@"_s, u"!$&'()*+,:=@"_s, u"!$&'()*+,:=@"_s},
    {u"a/b"_s, u"a/b"_s, u"a/b"_s},
    {u"a?b"_s, u"a%3Fb"_s, u"a?b"_s},
    {u"a;b"_s, u"a%3Bb"_s, u"a;b"_s},
    {u"a&b=c+d"_s, u"a&b=c+d"_s, u"a&b=c+d"_s},
    {u"a b"_s, u"a%20b"_s, u"a%20b"_s},
    {u"Work"_s, u"Work"_s, u"Work"_s},
    {u"a#b"_s, u"a%23b"_s, u"a%23b"_s},
    {u"100%"_s, u"100%25"_s, u"100%25"_s},
    {u"%41"_s, u"%2541"_s, u"%2541"_s},
    {u"[::1]"_s, u"%5B::1%5D"_s, u"%5B::1%5D"_s},
    {u"\"<>\\^`{|}"_s, u"%22%3C%3E%5C%5E%60%7B%7C%7D"_s, u"%22%3C%3E%5C%5E%60%7B%7C%7D"_s},
    {u"\r\n\t"_s, u"%0D%0A%09"_s, u"%0D%0A%09"_s},
    {QString(QChar(0)), u"%00"_s, u"%00"_s},
    {u"é"_s, u"%C3%A9"_s, u"%C3%A9"_s},
    {u"😀"_s, u"%F0%9F%98%80"_s, u"%F0%9F%98%80"_s},
    {unpairedHalf, u"%3Fa"_s, u"?a"_s}, // what has no UTF-8 becomes a question mark
    {u"https://a.b/c?d=e&f"_s, u"https://a.b/c%3Fd=e&f"_s, u"https://a.b/c?d=e&f"_s},
};
} // namespace

TEST(URLEncoding, Table)
{
    for (const Row &row : rows) {
        EXPECT_EQ(percentEncodedForPath(row.text), row.path);
        EXPECT_EQ(percentEncodedForQuery(row.text), row.query);
    }
}

TEST(URLEncoding, EveryTextGivesAURLThatKeepsIt)
{
    for (const Row &row : rows) {
        const QString text =
            u"/api/x/"_s + percentEncodedForPath(row.text) + u"?t="_s + percentEncodedForQuery(row.text);
        const QUrl url(text, QUrl::StrictMode);
        EXPECT_TRUE(url.isValid()) << text.toStdString();
        EXPECT_EQ(url.toEncoded(), text.toLatin1());
    }
}
