#include "Base/Json/Writing.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

std::string written(const QString &text)
{
    QByteArray out;
    json::write(out, text);
    return out.toStdString();
}

// As Qt writes it.
std::string reference(const QString &text)
{
    const QByteArray document = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return document.sliced(1, document.size() - 2).toStdString();
}

} // namespace

TEST(JsonWriting, WritesPlainTextAsItStands)
{
    for (const QString &text :
        {u""_s, u"a"_s, u"log line, with = and /"_s, u"Größe"_s, u"नमस्ते"_s, u"👩"_s, u"~\u007f"_s})
        EXPECT_EQ(written(text), '"' + text.toStdString() + '"');
}

TEST(JsonWriting, EscapesEachCharacterThatCannotStandForItself)
{
    QString all = u"\"\\"_s;
    for (char16_t c = 0; c < u' '; ++c)
        all += QChar(c);
    for (const QChar c : std::as_const(all)) {
        for (const QString &text : {QString(c), u"before "_s + c, c + u" behind"_s, u"ü"_s + c + u"ü"_s}) {
            EXPECT_EQ(written(text), reference(text));
            EXPECT_NE(written(text), '"' + text.toStdString() + '"') << int{c.unicode()};
        }
    }
}

TEST(JsonWriting, WritesHalfACharacterAsAnEscape)
{
    for (const QString &text : {QString(QChar(0xD83D)), u"a"_s + QChar(0xDC69), QChar(0xDC69) + u"b"_s})
        EXPECT_EQ(written(text), reference(text));
    EXPECT_EQ(written(QString(QChar(0xD83D))), "\"\\ud83d\"");
}
