#include "API/Records/VeranoxEditableConfig.h"
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxTunnel.h"
#include "Tests/Support/RecordChecks.h"
#include <limits>

using namespace Qt::StringLiterals;
using Tunnels = QList<VeranoxTunnel>;

namespace {

// Numbers that are JSON and fit neither 64 bits nor a double.
QByteArrayList hugeNumbers()
{
    return {"1e400", "-1e400", "1e999", "2.5E+999", "1e99999999999999999999", "1.7976931348623159e308",
        "99999999999999999999999", "-99999999999999999999999", "18446744073709551616", "-9223372036854775809",
        "-9223372036854775808.5", '-' + QByteArray(400, '9'), QByteArray(100'000, '9'),
        "1" + QByteArray(400, '0') + ".5"};
}

constexpr const char *malformedNumbers[] = {"01", "+1", "0x10", "NaN", "Infinity", "--1", ".5", "1.", "1e", "1e+",
    "+1e999", "1e999e1", "1e999x", "1.5.5", "-", "01e999", "1.e999", "0199999999999999999999999"};

} // namespace

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
    for (const QByteArray &number : hugeNumbers()) {
        const auto error = checks::failure<VeranoxTunnel>("{\"ActiveConns\":" + number + "}");
        ASSERT_TRUE(error) << number.left(30).toStdString();
        EXPECT_EQ(error->place(), u"ActiveConns") << number.left(30).toStdString();
        EXPECT_TRUE(error->found().startsWith("the number "_L1)) << number.left(30).toStdString();
    }
    for (const QByteArray number : malformedNumbers)
        EXPECT_TRUE(checks::failure<VeranoxTunnel>("{\"ActiveConns\":" + number + "}")) << number.toStdString();
}

TEST(HostileJson, AnUnknownKeyMayHoldAnyNumber)
{
    const QByteArray known = R"("Name": "1e999 \\\" 99999999999999999999999", "ActiveConns": 9223372036854775807)";
    for (const QByteArray &number : hugeNumbers()) {
        for (const QByteArray &unknown : {number, "[1, " + number + "]", R"({"deep": [{"er": )" + number + "}]}"}) {
            for (const QByteArray &text :
                {R"({"new": )" + unknown + ", " + known + '}', '{' + known + R"(, "new":)" + unknown + '}'}) {
                const auto tunnel = decodeRecord<VeranoxTunnel>(text);
                EXPECT_EQ(tunnel.name, u"1e999 \\\" 99999999999999999999999") << text.left(99).toStdString();
                EXPECT_EQ(tunnel.activeConns, std::numeric_limits<qint64>::max()) << text.left(99).toStdString();
            }
        }
    }
}

TEST(HostileJson, WhatIsNoNumberFailsUnderAnyKey)
{
    for (const QByteArray number : malformedNumbers) {
        const auto error = checks::failure<VeranoxTunnel>(R"({"huge": 1e999, "new": )" + number + "}");
        ASSERT_TRUE(error) << number.toStdString();
        EXPECT_EQ(error->expected(), u"JSON") << number.toStdString();
    }
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
