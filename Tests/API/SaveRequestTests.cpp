// The records that the application sends when it saves.
#include "API/Records/VeranoxEditablePublication.h"
#include "API/Records/VeranoxEditableTunnel.h"
#include "API/Records/VeranoxFeedback.h"
#include "API/Records/VeranoxSaveConfigResponse.h"
#include "Tests/Support/RecordChecks.h"

using namespace Qt::StringLiterals;

namespace {

const VeranoxTunnelSaveRequest throughSSH{.name = u"db"_s,
    .originalName = u"old"_s,
    .tunnel = {.displayName = u"Database"_s,
        .profile = u"acme"_s,
        .mode = u"ssh"_s,
        .listen = u"127.0.0.1:1"_s,
        .target = u"db:5432"_s,
        .ssh = VeranoxEditableTunnelSSH{.bastion = u"b"_s, .user = u"me"_s, .auth = u"key"_s, .identityFile = u"/k"_s},
        .disabled = true}};
const QByteArray throughSSHText =
    R"({"Name":"db","OriginalName":"old","Tunnel":{"DisplayName":"Database","Profile":"acme","Mode":"ssh",)"
    R"("Listen":"127.0.0.1:1","Target":"db:5432",)"
    R"("SSH":{"Bastion":"b","User":"me","Auth":"key","IdentityFile":"/k"},"Disabled":true}})";

const VeranoxPublicationSaveRequest wiki{.name = u"wiki"_s,
    .originalName = {},
    .publication = {.displayName = u""_s,
        .profile = u"acme"_s,
        .target = u"[::1]:80"_s,
        .reach = u"funnel"_s,
        .port = 443,
        .tls = true,
        .disabled = false}};
const QByteArray wikiText =
    R"({"Name":"wiki","Publication":{"DisplayName":"","Profile":"acme","Target":"[::1]:80","Reach":"funnel",)"
    R"("Port":443,"TLS":true,"Disabled":false}})";

} // namespace

TEST(TunnelSaveRequest, IsWrittenInTheOrderOfItsFieldsAndReadBack)
{
    EXPECT_EQ(encodeRecord(throughSSH), throughSSHText);
    EXPECT_EQ(decodeRecord<VeranoxTunnelSaveRequest>(throughSSHText), throughSSH);
}

TEST(TunnelSaveRequest, LeavesOutWhatIsAbsent)
{
    VeranoxTunnelSaveRequest request = throughSSH;
    request.originalName.reset();
    request.tunnel.ssh.reset();
    const QByteArray text = encodeRecord(request);
    EXPECT_FALSE(text.contains("OriginalName"));
    EXPECT_FALSE(text.contains("SSH"));
    EXPECT_EQ(decodeRecord<VeranoxTunnelSaveRequest>(text), request);
}

TEST(EditableTunnel, NeedsEveryKeyButSSH)
{
    const QJsonObject full = checks::object(encodeRecord(throughSSH.tunnel));
    checks::expectEachKeyIsRequired<VeranoxEditableTunnel>(checks::without(full, u"SSH"_s));
    checks::expectWrongTypesFail<VeranoxEditableTunnel>(full);
    for (const QString &key : full.value(u"SSH"_s).toObject().keys()) {
        const QJsonObject ssh = checks::without(full.value(u"SSH"_s).toObject(), key);
        const auto error = checks::failure<VeranoxEditableTunnel>(checks::text(checks::with(full, u"SSH"_s, ssh)));
        EXPECT_EQ(error.value().place(), u"SSH."_s + key);
    }
}

TEST(EditableTunnel, HoldsNoPassword)
{
    const auto keysOf = [](const QJsonObject &object) { return object.keys().join(u' '); };
    QJsonObject text = checks::object(encodeRecord(throughSSH.tunnel));
    QJsonObject ssh = text.value(u"SSH"_s).toObject();
    EXPECT_EQ(keysOf(text), u"Disabled DisplayName Listen Mode Profile SSH Target");
    EXPECT_EQ(keysOf(ssh), u"Auth Bastion IdentityFile User");
    ssh.insert(u"Password"_s, u"x"_s); // nor does it take one
    text.insert(u"Password"_s, u"x"_s);
    text.insert(u"SSH"_s, ssh);
    EXPECT_EQ(encodeRecord(decodeRecord<VeranoxEditableTunnel>(checks::text(text))), encodeRecord(throughSSH.tunnel));
    EXPECT_EQ(encodeRecord(VeranoxTunnelSecretRequest{.password = u"päss\\"_s}), R"({"Password":"päss\\"})");
}

TEST(PublicationSaveRequest, IsWrittenInTheOrderOfItsFieldsAndReadBack)
{
    EXPECT_EQ(encodeRecord(wiki), wikiText);
    EXPECT_EQ(decodeRecord<VeranoxPublicationSaveRequest>(wikiText), wiki);
}

TEST(EditablePublication, NeedsEveryKey)
{
    const QJsonObject full = checks::object(encodeRecord(wiki.publication));
    checks::expectEachKeyIsRequired<VeranoxEditablePublication>(full);
    checks::expectWrongTypesFail<VeranoxEditablePublication>(full);
    checks::expectUnknownAndMiscasedKeysAreIgnored<VeranoxEditablePublication>(full);
}

TEST(SaveConfigResponse, NeedsBothKeys)
{
    const QJsonObject full{{u"status"_s, u"saved"_s}, {u"path"_s, u"/c"_s}};
    const auto response = decodeRecord<VeranoxSaveConfigResponse>(checks::text(full));
    EXPECT_EQ(response, (VeranoxSaveConfigResponse{.status = u"saved"_s, .path = u"/c"_s}));
    checks::expectEachKeyIsRequired<VeranoxSaveConfigResponse>(full);
    checks::expectWrongTypesFail<VeranoxSaveConfigResponse>(full);
}

TEST(FeedbackResult, MayHaveAnAddress)
{
    EXPECT_EQ(decodeRecord<VeranoxFeedbackResult>("{}").url, std::nullopt);
    EXPECT_EQ(decodeRecord<VeranoxFeedbackResult>(R"({"url":null})").url, std::nullopt);
    EXPECT_EQ(decodeRecord<VeranoxFeedbackResult>(R"({"url":""})").url, u""_s);
    EXPECT_TRUE(checks::failure<VeranoxFeedbackResult>(R"({"url":7})"));
}
