#include "API/Records/VeranoxEditableConfig.h"
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxTunnel.h"
#include "Tests/Support/RecordChecks.h"
#include <limits>

using namespace Qt::StringLiterals;
using Tunnels = QList<VeranoxTunnel>;

TEST(HostileJson, WhatIsNoJSONFails)
{
    const QByteArrayList faults{"", " ", "\0"_ba, "nonsense", "[", "[{]", "[{}]]", "[{},]", "{\"Name\"}", "[{}] x",
        "\xff\xfe[\0]\0"_ba, QByteArray("[\"\xff\"]"), QByteArray("[{\"Name\":\"\xed\xa0\x80\"}]"), "[{\"Name\":\"a]",
        "[{\"Name\":\"\\ud800\"}]", "[{\"Name\":\"a\nb\"}]", "[{'Name':'a'}]", "// none\n[]"};
    for (const QByteArray &fault : faults) {
        const auto error = checks::failure<Tunnels>(fault);
        ASSERT_TRUE(error) << fault.toStdString();
        EXPECT_EQ(error->expected(), u"JSON");
    }
}

TEST(HostileJson, TheOutermostValueMustFit)
{
    EXPECT_EQ(checks::failure<Tunnels>("{}").value().expected(), u"a list");
    EXPECT_EQ(checks::failure<VeranoxTunnel>("[]").value().expected(), u"an object");
    for (const QByteArray scalar : {"3", "null", "true", "\"text\""}) {
        EXPECT_TRUE(checks::failure<Tunnels>(scalar)) << scalar.toStdString();
        EXPECT_TRUE(checks::failure<VeranoxTunnel>(scalar)) << scalar.toStdString();
    }
    EXPECT_EQ(checks::failure<Tunnels>("[{}, null]").value().place(), u"[1]");
}

TEST(HostileJson, NestingHasABound)
{
    for (const QByteArray opening : {"[", "{\"Name\":", "[{\"Name\":["}) {
        EXPECT_TRUE(checks::failure<Tunnels>(opening.repeated(1'000'000)));
        EXPECT_TRUE(checks::failure<VeranoxTunnel>(opening.repeated(1'000'000)));
    }
    EXPECT_TRUE(checks::failure<Tunnels>(QByteArray(500'000, '[') + QByteArray(500'000, ']')));
}

TEST(HostileJson, NumbersAreWholeAndOf64Bits)
{
    const auto read = [](const QByteArray &number) {
        return decodeRecord<VeranoxTunnel>("{\"ActiveConns\":" + number + "}").activeConns;
    };
    EXPECT_EQ(read("9223372036854775807"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(read("-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(read("9007199254740993"), 9007199254740993);
    EXPECT_EQ(read("-0"), 0);
    EXPECT_EQ(read("0"), 0);
    EXPECT_EQ(read("1"), 1);
    EXPECT_EQ(read("3.0"), 3);
    EXPECT_EQ(read("1e3"), 1000);
    EXPECT_EQ(read("9.007199254740994e15"), 9007199254740994);

    for (const QByteArray number : {"1.5", "0.5", "-0.1", "1e-3", "9223372036854775808", "18446744073709551615", "1e19",
             "9.3e18", "1e30", "-1e300"}) {
        const auto error = checks::failure<VeranoxTunnel>("{\"ActiveConns\":" + number + "}");
        ASSERT_TRUE(error) << number.toStdString();
        EXPECT_EQ(error->place(), u"ActiveConns");
    }
    for (const QByteArray number : {"1e400", "01", "+1", "0x10", "NaN", "Infinity", "--1", ".5", "1.",
             "-9223372036854775809", "18446744073709551616"})
        EXPECT_TRUE(checks::failure<VeranoxTunnel>("{\"ActiveConns\":" + number + "}")) << number.toStdString();
}

TEST(HostileJson, TheFirstOfDuplicateKeysHolds)
{
    EXPECT_EQ(decodeRecord<VeranoxTunnel>(R"({"Name": "a", "Name": "b", "Name": 3})").name, u"a");
    EXPECT_TRUE(checks::failure<VeranoxTunnel>(R"({"Name": 3, "Name": "b"})"));
}

TEST(HostileJson, TextMayHoldAnyCharacter)
{
    const auto name = [](const QByteArray &json) { return decodeRecord<VeranoxTunnel>(json).name; };
    EXPECT_EQ(name(R"({"Name": "a\u0000b"})"), u"a\0b"_s);
    EXPECT_EQ(name(R"({"Name": "\ud83d\ude00"})"), u"\U0001F600");
    EXPECT_EQ(name("{\"Name\": \"\xf0\x9f\x98\x80\"}"), u"\U0001F600");
    EXPECT_EQ(name("{\"Name\": \"" + QByteArray(5'000'000, 'x') + "\"}").size(), 5'000'000);
}

TEST(HostileJson, AByteOrderMarkIsNoFault)
{
    EXPECT_TRUE(decodeRecord<Tunnels>("\xef\xbb\xbf[]").isEmpty());
}

TEST(HostileJson, TheMessageNamesThePlaceAndBothKinds)
{
    const auto error = checks::failure<QList<VeranoxProfile>>(R"([{}, {"status": {"ok": "yes"}}])");
    EXPECT_EQ(error.value().localizedDescription(),
        u"The answer of Veranox's local service could not be read: expected true or false at [1].status.ok, "
        "found text.");
    EXPECT_STREQ(error->what(), error->localizedDescription().toUtf8().constData());
}

TEST(HostileJson, TheMessageOfAFaultSaysWhatIsWrong)
{
    EXPECT_THAT(checks::failure<Tunnels>("[\"\xff\"]").value().what(),
        testing::AllOf(testing::StartsWith("The answer of Veranox's local service could not be read: expected JSON, "
                                           "found a fault ("),
            testing::HasSubstr("UTF-8")));
}

TEST(HostileJson, AMessageStaysShortHoweverLongTheKey)
{
    const QByteArray key(1'000'000, 'k');
    const auto error = checks::failure<VeranoxEditableConfig>(R"({"Version": 1, "Router": {},
        "Tailscale": {"TailscaleBin": "", "TailscaledBin": ""}, "Paths": {"AppSupportDir": "", "ConfigDir": ""},
        "Profiles": {")"
        + key + R"(": {"Port": true}}})");
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->place().startsWith("Profiles.kkk"_L1));
    EXPECT_TRUE(error->place().endsWith(".Port"_L1));
    EXPECT_LT(error->localizedDescription().size(), 300);
}
