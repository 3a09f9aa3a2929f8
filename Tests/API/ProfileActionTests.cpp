#include "API/Records/VeranoxProfileAction.h"
#include "Tests/Support/RecordChecks.h"
#include <QMetaProperty>

using namespace Qt::StringLiterals;

namespace {

const QByteArray fullAction = R"({
    "profile": "acme", "action": "login", "ok": true, "output": "out", "error": "err", "auth_url": "https://h.example"})";

struct AddressCase {
    const char *name;
    QString structured;
    QString output;
    QString error;
    QString address; // empty: none
};

const std::vector<AddressCase> addressCases = {
    {"nothing", u""_s, u""_s, u""_s, u""_s},
    {"structured", u" https://host.example/a \n"_s, u"https://other.example"_s, u""_s, u"https://host.example/a"_s},
    {"sentenceEnd", u""_s, u"visit https://host.example/a/xY_1."_s, u""_s, u"https://host.example/a/xY_1"_s},
    {"brackets", u""_s, u"(see https://host.example/a)]}>;:,"_s, u""_s, u"https://host.example/a"_s},
    {"structuredIsNotSecure", u"http://host.example"_s, u"or https://b.example"_s, u""_s, u"https://b.example"_s},
    {"onlyHTTP", u"http://host.example"_s, u"http://b.example"_s, u""_s, u""_s},
    {"upperCaseScheme", u"HTTPS://Host.example/"_s, u""_s, u""_s, u"https://host.example/"_s},
    {"upperCaseInTextIsNotFound", u""_s, u"HTTPS://host.example"_s, u""_s, u""_s},
    {"withoutHost", u"https:///x"_s, u""_s, u""_s, u""_s},
    {"fromError", u""_s, u"no address"_s, u"go to https://e.example/q?a=b now"_s, u"https://e.example/q?a=b"_s},
    {"outputBeforeError", u""_s, u"https://o.example"_s, u"https://e.example"_s, u"https://o.example"_s},
    {"quotes", u""_s, u"\"https://q.example/1\" 'https://q.example/2'"_s, u""_s, u"https://q.example/1"_s},
    {"outputEndsAtTheLine", u""_s, u"https://o.example/a"_s, u"b"_s, u"https://o.example/a"_s},
    {"nothingBehindTheScheme", u""_s, u"https://..."_s, u""_s, u""_s},
};

} // namespace

class ProfileActionAddress : public testing::TestWithParam<AddressCase> { };

TEST_P(ProfileActionAddress, isFound)
{
    const VeranoxProfileAction action{
        .output = GetParam().output, .error = GetParam().error, .structuredAuthURL = GetParam().structured};
    EXPECT_EQ(action.authURL().value_or(QUrl()).toString(), GetParam().address);
}

INSTANTIATE_TEST_SUITE_P(
    each, ProfileActionAddress, testing::ValuesIn(addressCases), [](const auto &info) { return info.param.name; });

TEST(VeranoxProfileAction, ReadsEachKeyIntoItsField)
{
    const VeranoxProfileAction expected{.profile = u"acme"_s,
        .action = u"login"_s,
        .ok = true,
        .output = u"out"_s,
        .error = u"err"_s,
        .structuredAuthURL = u"https://h.example"_s};
    EXPECT_EQ(decodeRecord<VeranoxProfileAction>(fullAction), expected);
    EXPECT_EQ(decodeRecord<VeranoxProfileAction>("{}"), VeranoxProfileAction());
}

TEST(VeranoxProfileAction, EachKeyMayBeMissingButNotOfAnotherType)
{
    const QJsonObject full = checks::object(fullAction);
    checks::expectAbsentAndNullAreTheSame<VeranoxProfileAction>(full);
    checks::expectWrongTypesFail<VeranoxProfileAction>(full);
    checks::expectUnknownAndMiscasedKeysAreIgnored<VeranoxProfileAction>(full);
}
