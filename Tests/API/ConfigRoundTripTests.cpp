#include "API/Records/VeranoxEditableConfig.h"
#include "API/Values/VeranoxProfileAppearance.h"
#include "Base/Json/Json.h"
#include "Tests/Support/QtPrinters.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>
#include <limits>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint32_t seed = 20'260'102;
constexpr int rounds = 500;

// Makes values at random, with a liking for what breaks encoders.
class Dice {
public:
    int below(int limit) { return std::uniform_int_distribution(0, limit - 1)(m_engine); }
    bool yes() { return below(2) == 0; }

    qint64 number()
    {
        if (below(8) == 0)
            return yes() ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
        return std::uniform_int_distribution<qint64>()(m_engine) >> below(64);
    }

    QString text()
    {
        QString text;
        for (int length = below(12); length > 0; --length)
            text += character();
        return text;
    }

    QStringList texts()
    {
        QStringList texts;
        for (int length = below(4); length > 0; --length)
            texts.append(text());
        return texts;
    }

    template <class Choices> auto oneOf(const Choices &choices)
    {
        return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
    }

private:
    QString character()
    {
        constexpr std::u32string_view odd =
            U"\"\\/\b\f\n\r\t\0\u007f\u00e9\u2028\u2029\ufeff\uffff\U0001F600\U0010FFFF";
        const char32_t character = yes() ? static_cast<char32_t>(0x20 + below(0x5f)) : oneOf(odd);
        return QString::fromUcs4(&character, 1);
    }

    std::mt19937 m_engine{seed};
};

VeranoxEditableProfile randomProfile(Dice &dice)
{
    return {.displayName = dice.text(),
        .icon = dice.oneOf(VeranoxProfileAppearance::icons()).identifier,
        .color = dice.oneOf(VeranoxProfileAppearance::colors()).identifier,
        .backend = dice.text(),
        .hostname = dice.text(),
        .authKeyEnv = dice.text(),
        .controlURL = dice.text(),
        .suffixes = dice.texts(),
        .matchRoot = dice.yes(),
        .acceptRoutes = dice.yes(),
        .ipRoutes = dice.texts(),
        .stateDir = dice.text(),
        .socket = dice.text(),
        .httpProxy = dice.text(),
        .socks5Proxy = dice.text(),
        .port = dice.number()};
}

VeranoxEditableConfig randomDocument(Dice &dice)
{
    VeranoxEditableConfig document{.version = dice.number(),
        .router = {.httpProxy = dice.text(),
            .socks5Proxy = dice.text(),
            .pacListen = dice.text(),
            .profileHTTPProxyBase = dice.number(),
            .profileSOCKS5ProxyBase = dice.number(),
            .profileUDPPortBase = dice.number(),
            .profileHostnameBase = dice.text(),
            .tunnelListenBase = dice.number()},
        .tailscale = {dice.text(), dice.text()},
        .paths = {dice.text(), dice.text()},
        .profiles = {},
        .security = {dice.yes(), dice.yes(), dice.yes(), dice.yes()}};
    for (int count = dice.below(6); count > 0; --count)
        document.profiles.insert(dice.text(), randomProfile(dice));
    return document;
}

// The object with some of its keys taken away or set to null, and with a key that no record knows.
QJsonObject worn(QJsonObject object, Dice &dice)
{
    for (const QString &key : object.keys()) {
        if (dice.below(4) == 0)
            object.remove(key);
        else if (dice.below(4) == 0)
            object.insert(key, QJsonValue::Null);
    }
    object.insert(u"unknown "_s + dice.text(), QJsonArray{1.5, dice.text()});
    return object;
}

// A document as an older or newer service might send it: everything lenient is worn.
QByteArray wornText(const VeranoxEditableConfig &document, Dice &dice)
{
    QJsonObject whole = QJsonDocument::fromJson(encodeRecord(document)).object();
    whole.insert("Router"_L1, worn(whole.value("Router"_L1).toObject(), dice));
    QJsonObject profiles = whole.value("Profiles"_L1).toObject();
    for (const QString &name : profiles.keys())
        profiles.insert(name, worn(profiles.value(name).toObject(), dice));
    whole.insert("Profiles"_L1, profiles);
    whole.insert("Tunnels"_L1, QJsonObject{{u"db"_s, 1}});
    return QJsonDocument(whole).toJson();
}

class ConfigRoundTrip : public testing::Test {
protected:
    ConfigRoundTrip() { RecordProperty("seed", static_cast<int>(seed)); }

    Dice dice;
};

} // namespace

TEST_F(ConfigRoundTrip, WhatIsWrittenReadsTheSame)
{
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", round " << round);
        const VeranoxEditableConfig document = randomDocument(dice);
        const QByteArray json = encodeRecord(document);
        ASSERT_EQ(decodeRecord<VeranoxEditableConfig>(json), document) << json.toStdString();
    }
}

TEST_F(ConfigRoundTrip, WhatIsWrittenIsJSONForOthersToo)
{
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", round " << round);
        const VeranoxEditableConfig document = randomDocument(dice);
        QJsonParseError error;
        const auto parsed = QJsonDocument::fromJson(encodeRecord(document), &error);
        ASSERT_EQ(error.error, QJsonParseError::NoError);
        ASSERT_EQ(parsed.object().value("Profiles"_L1).toObject().keys(), document.profiles.keys());
        ASSERT_EQ(parsed.object().value("Version"_L1).toInteger(), document.version);
    }
}

TEST_F(ConfigRoundTrip, WhatWasReadIsWrittenAndReadTheSame)
{
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", round " << round);
        const QByteArray json = wornText(randomDocument(dice), dice);
        const auto document = decodeRecord<VeranoxEditableConfig>(json);
        ASSERT_EQ(decodeRecord<VeranoxEditableConfig>(encodeRecord(document)), document) << json.toStdString();
    }
}
