#include "API/Records/VeranoxPublication.h"
#include "Tests/Support/RecordChecks.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray strictPart = R"({
    "Name": "web", "DisplayName": "Website", "Profile": "acme", "Target": "127.0.0.1:8080", "Reach": "funnel",
    "Port": 443, "TLS": true, "Disabled": true, "State": "listening", "Address": "https://web", "ActiveConns": 2,
    "LastError": "refused"})";

const QByteArray fullReachability = R"({
    "State": "unreachable", "Peers": 4, "Everyone": true, "Detail": "why", "Hint": {
        "HostAlias": "alias", "NodeIP": "100.64.0.1", "Source": "src", "HostsEntry": "hosts", "Grant": "grant",
        "PolicyURL": "https://admin"}})";

const VeranoxPublicationPolicyHint hint{
    .hostAlias = u"alias"_s,
    .nodeIP = u"100.64.0.1"_s,
    .source = u"src"_s,
    .hostsEntry = u"hosts"_s,
    .grant = u"grant"_s,
    .policyURLString = u"https://admin"_s,
};

const VeranoxPublicationReachability reachability{
    .state = u"unreachable"_s, .peers = 4, .everyone = true, .detail = u"why"_s, .hint = hint};

const VeranoxPublication website{
    .name = u"web"_s,
    .displayName = u"Website"_s,
    .profile = u"acme"_s,
    .target = u"127.0.0.1:8080"_s,
    .reach = u"funnel"_s,
    .port = 443,
    .tls = true,
    .disabled = true,
    .state = u"listening"_s,
    .address = u"https://web"_s,
    .activeConns = 2,
    .lastError = u"refused"_s,
};

VeranoxPublication websiteWith(const QString &key, const QJsonValue &value)
{
    return decodeRecord<VeranoxPublication>(checks::text(checks::with(checks::object(strictPart), key, value)));
}

} // namespace

TEST(VeranoxPublication, ReadsEachKeyIntoItsField)
{
    QJsonObject full = checks::object(strictPart);
    full.insert("LastActive"_L1, u"yesterday"_s);
    full.insert("Reachability"_L1, checks::object(fullReachability));
    VeranoxPublication expected = website;
    expected.lastActive = u"yesterday"_s;
    expected.reachability = reachability;
    EXPECT_EQ(decodeRecord<VeranoxPublication>(checks::text(full)), expected);
    EXPECT_EQ(decodeRecord<QList<VeranoxPublication>>('[' + checks::text(full) + ']'), QList{expected});
    checks::expectAbsentAndNullAreTheSame<VeranoxPublication>(full);
    checks::expectUnknownAndMiscasedKeysAreIgnored<VeranoxPublication>(full);
}

TEST(VeranoxPublication, AnEmptyObjectTakesEveryDefault)
{
    const VeranoxPublication expected{.reach = u"tailnet"_s, .state = u"stopped"_s};
    EXPECT_EQ(decodeRecord<VeranoxPublication>("{}"), expected);
}

TEST(VeranoxPublication, AWrongTypeFails)
{
    checks::expectWrongTypesFail<VeranoxPublication>(checks::object(strictPart));
}

TEST(VeranoxPublication, TheLastTwoFieldsForgiveAnything)
{
    for (const QJsonValue &wrong : {QJsonValue(7), QJsonValue(QJsonArray{1}), QJsonValue(true)}) {
        EXPECT_EQ(websiteWith(u"LastActive"_s, wrong), website);
        EXPECT_EQ(websiteWith(u"Reachability"_s, wrong), website);
    }
    EXPECT_EQ(websiteWith(u"LastActive"_s, QJsonObject()), website);
    EXPECT_EQ(websiteWith(u"Reachability"_s, u"reachable"_s), website);
}

TEST(VeranoxPublication, AReachabilityWithOneUnreadableFieldIsForgottenWhole)
{
    const QJsonObject full = checks::object(fullReachability);
    for (const QString &key : {u"State"_s, u"Peers"_s, u"Everyone"_s, u"Detail"_s})
        EXPECT_EQ(websiteWith(u"Reachability"_s, checks::with(full, key, QJsonArray())), website) << key.toStdString();
}

TEST(VeranoxPublicationReachability, EachKeyMayBeMissing)
{
    EXPECT_EQ(decodeRecord<VeranoxPublicationReachability>(fullReachability), reachability);
    EXPECT_EQ(decodeRecord<VeranoxPublicationReachability>("{}"), VeranoxPublicationReachability());
    checks::expectAbsentAndNullAreTheSame<VeranoxPublicationReachability>(checks::object(fullReachability));
}

TEST(VeranoxPublicationReachability, AnUnreadableHintIsAbsentAndTheRestStays)
{
    const QJsonObject full = checks::object(fullReachability);
    VeranoxPublicationReachability expected = reachability;
    expected.hint.reset();
    for (const QJsonValue &unreadable :
        {QJsonValue(3), QJsonValue(u"text"_s), QJsonValue(QJsonObject{{u"Grant"_s, 3}}), QJsonValue(QJsonArray())}) {
        const QByteArray json = checks::text(checks::with(full, u"Hint"_s, unreadable));
        EXPECT_EQ(decodeRecord<VeranoxPublicationReachability>(json), expected);
    }
}

TEST(VeranoxPublicationPolicyHint, EachKeyMayBeMissing)
{
    EXPECT_EQ(decodeRecord<VeranoxPublicationReachability>(R"({"Hint": {}})").hint, VeranoxPublicationPolicyHint());
    const QJsonObject full = checks::object(fullReachability).value("Hint"_L1).toObject();
    for (const QString &key : full.keys()) {
        const QJsonObject partial{{u"Hint"_s, checks::without(full, key)}};
        const auto read = decodeRecord<VeranoxPublicationReachability>(checks::text(partial)).hint;
        ASSERT_TRUE(read);
        EXPECT_NE(*read, hint) << key.toStdString();
    }
}
