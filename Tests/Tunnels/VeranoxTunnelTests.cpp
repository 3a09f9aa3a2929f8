#include "API/Records/VeranoxTunnel.h"
#include "Tests/Support/RecordChecks.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray fullTunnel = R"({
    "Name": "db", "DisplayName": "Database", "Profile": "acme", "Mode": "ssh", "Listen": "127.0.0.1:1",
    "Target": "db:5432", "SSHBastion": "bastion", "SSHUser": "me", "SSHAuth": "key", "SSHIdentity": "/id",
    "Disabled": true, "State": "listening", "ActiveConns": 3, "LastError": "refused"})";

}

TEST(VeranoxTunnel, ReadsEachKeyIntoItsField)
{
    const VeranoxTunnel expected{
        .name = u"db"_s,
        .displayName = u"Database"_s,
        .profile = u"acme"_s,
        .mode = u"ssh"_s,
        .listen = u"127.0.0.1:1"_s,
        .target = u"db:5432"_s,
        .sshBastion = u"bastion"_s,
        .sshUser = u"me"_s,
        .sshAuth = u"key"_s,
        .sshIdentity = u"/id"_s,
        .disabled = true,
        .state = u"listening"_s,
        .activeConns = 3,
        .lastError = u"refused"_s,
    };
    EXPECT_EQ(decodeRecord<VeranoxTunnel>(fullTunnel), expected);
    EXPECT_EQ(decodeRecord<QList<VeranoxTunnel>>('[' + fullTunnel + ']'), QList{expected});
}

TEST(VeranoxTunnel, AnEmptyObjectTakesEveryDefault)
{
    const VeranoxTunnel expected{.mode = u"native"_s, .sshAuth = u"agent"_s, .state = u"stopped"_s};
    EXPECT_EQ(decodeRecord<VeranoxTunnel>("{}"), expected);
}

TEST(VeranoxTunnel, EachKeyMayBeMissingButNotOfAnotherType)
{
    const QJsonObject full = checks::object(fullTunnel);
    checks::expectAbsentAndNullAreTheSame<VeranoxTunnel>(full);
    checks::expectWrongTypesFail<VeranoxTunnel>(full);
    checks::expectUnknownAndMiscasedKeysAreIgnored<VeranoxTunnel>(full);
}

TEST(VeranoxTunnel, OneUnreadableTunnelFailsTheWholeReply)
{
    const auto error = checks::failure<QList<VeranoxTunnel>>(R"([{}, {"ActiveConns": "3"}, {}])");
    EXPECT_EQ(error.value().place(), u"[1].ActiveConns");
}
