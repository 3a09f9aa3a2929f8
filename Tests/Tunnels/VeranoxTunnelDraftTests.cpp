#include "Tests/Support/QtPrinters.h"
#include "Tests/Tunnels/TunnelDrafts.h"
#include <QList>
#include <gmock/gmock.h>
#include <random>

using namespace Qt::StringLiterals;
using namespace tunnel_drafts;

namespace {

VeranoxTunnel sshTunnel()
{
    return {.name = u"db"_s,
        .displayName = u"Database"_s,
        .profile = u"acme"_s,
        .mode = u"ssh"_s,
        .listen = u"127.0.0.1:45000"_s,
        .target = u"db:5432"_s,
        .sshBastion = u"bastion"_s,
        .sshUser = u"me"_s,
        .sshAuth = u"password"_s,
        .sshIdentity = u"/home/me/.ssh/id_rsa"_s,
        .disabled = true,
        .state = u"listening"_s,
        .activeConns = 2};
}

QList<VeranoxTunnel> tunnelsNamed(const QStringList &names)
{
    QList<VeranoxTunnel> tunnels;
    for (const QString &name : names)
        tunnels.append({.name = name});
    return tunnels;
}

} // namespace

TEST(VeranoxTunnelSSHAuth, WordsAndOrder)
{
    QStringList words;
    for (const Auth auth : allVeranoxTunnelSSHAuths)
        words.append(rawValue(auth));
    EXPECT_EQ(words, QStringList({u"agent"_s, u"key"_s, u"password"_s}));
    for (const Auth auth : allVeranoxTunnelSSHAuths)
        EXPECT_EQ(tunnelSSHAuth(rawValue(auth)), auth);
    for (const QString &other : {u""_s, u"Key"_s, u" password"_s, u"kerberos"_s})
        EXPECT_EQ(tunnelSSHAuth(other), Auth::agent) << other.toStdString();
}

TEST(VeranoxTunnelDraft, ANewOneIsEmpty)
{
    const Draft draft;
    EXPECT_FALSE(draft.id.isNull());
    EXPECT_NE(draft, Draft()) << "each edit is one of its own";
    EXPECT_EQ(draft.originalName, std::nullopt);
    EXPECT_EQ(draft.sshAuth, Auth::agent);
    EXPECT_FALSE(draft.useSSH || draft.disabled || draft.hasStoredPassword);
    EXPECT_EQ(draft.name + draft.displayName + draft.profile + draft.target + draft.listen + draft.password, u"");
}

TEST(VeranoxTunnelDraft, ShowsAnExistingTunnel)
{
    const Draft draft(sshTunnel(), true);
    EXPECT_FALSE(draft.id.isNull());
    EXPECT_EQ(draft.originalName, u"db"_s);
    EXPECT_EQ(draft.name, u"db");
    EXPECT_EQ(draft.displayName, u"Database");
    EXPECT_EQ(draft.profile, u"acme");
    EXPECT_EQ(draft.target, u"db:5432");
    EXPECT_TRUE(draft.useSSH);
    EXPECT_EQ(draft.bastion, u"bastion");
    EXPECT_EQ(draft.sshUser, u"me");
    EXPECT_EQ(draft.sshAuth, Auth::password);
    EXPECT_EQ(draft.identityFile, u"/home/me/.ssh/id_rsa");
    EXPECT_EQ(draft.password, u"");
    EXPECT_TRUE(draft.hasStoredPassword);
    EXPECT_EQ(draft.listen, u"127.0.0.1:45000");
    EXPECT_TRUE(draft.disabled);
}

TEST(VeranoxTunnelDraft, ALabelThatRepeatsTheNameIsNotShown)
{
    VeranoxTunnel tunnel = sshTunnel();
    tunnel.displayName = u"db"_s;
    EXPECT_EQ(Draft(tunnel).displayName, u"");
    tunnel.displayName = u"DB"_s;
    EXPECT_EQ(Draft(tunnel).displayName, u"DB");
    EXPECT_EQ(with(&Draft::displayName, u"db"_s).makeTunnel()->displayName, u"db") << "typed so, it is stored so";
}

TEST(VeranoxTunnelDraft, ModesAndStoredPasswords)
{
    struct Row {
        QString mode;
        QString auth;
        bool useSSH;
        bool asksForStoredPassword;
    };
    const QList<Row> rows{
        {u"ssh"_s, u"password"_s, true, true},
        {u"ssh"_s, u"key"_s, true, false},
        {u"ssh"_s, u"agent"_s, true, false},
        {u"native"_s, u"password"_s, false, false},
        {u"SSH"_s, u"password"_s, false, false},
        {u""_s, u""_s, false, false},
    };
    for (const Row &row : rows) {
        const VeranoxTunnel tunnel{.mode = row.mode, .sshBastion = u"b"_s, .sshAuth = row.auth};
        const Draft draft(tunnel, true);
        EXPECT_EQ(draft.useSSH, row.useSSH) << row.mode.toStdString();
        EXPECT_EQ(draft.hasStoredPassword, row.asksForStoredPassword) << row.auth.toStdString();
        EXPECT_EQ(Draft::asksForStoredPassword(tunnel), row.asksForStoredPassword) << row.auth.toStdString();
        EXPECT_EQ(draft.bastion, u"b") << "kept for a native tunnel, too";
    }
}

TEST(VeranoxTunnelDraft, MakesANativeTunnel)
{
    Draft draft = sshDraft(Auth::password);
    draft.useSSH = false;
    draft.displayName = u" Data base "_s;
    draft.profile = u" acme "_s;
    draft.disabled = true;
    const VeranoxEditableTunnel expected{.displayName = u"Data base"_s,
        .profile = u" acme "_s,
        .mode = u"native"_s,
        .listen = {},
        .target = u"db.internal.example:5432"_s,
        .ssh = std::nullopt,
        .disabled = true};
    EXPECT_EQ(draft.makeTunnel().value(), expected);
}

TEST(VeranoxTunnelDraft, MakesTheSSHGroupThatTheAuthenticationNeeds)
{
    for (const Auth auth : allVeranoxTunnelSSHAuths) {
        Draft draft = sshDraft(auth);
        draft.bastion = u" bastion "_s;
        draft.sshUser = u" me "_s;
        draft.identityFile = u" /key "_s;
        draft.password = u"secret"_s;
        const VeranoxEditableTunnelSSH expected{.bastion = u"bastion"_s,
            .user = u"me"_s,
            .auth = rawValue(auth),
            .identityFile = auth == Auth::key ? u"/key"_s : QString()};
        const VeranoxEditableTunnel made = draft.makeTunnel().value();
        EXPECT_EQ(made.mode, u"ssh");
        EXPECT_EQ(made.ssh, expected) << rawValue(auth).toStdString();
        EXPECT_EQ(draft.identityFile, u" /key ") << "the draft keeps it for a change of mind";
    }
}

TEST(VeranoxTunnelDraft, NameConflicts)
{
    struct Row {
        std::optional<QString> originalName;
        QString name;
        std::optional<QString> conflict;
    };
    const QList<Row> rows{
        {std::nullopt, u" B "_s, u"A tunnel named \"b\" already exists."_s}, {std::nullopt, u"c"_s, std::nullopt},
        {std::nullopt, u" "_s, std::nullopt}, {u"a"_s, u"b"_s, u"A tunnel named \"b\" already exists."_s},
        {u"a"_s, u" A"_s, std::nullopt}, {u"a"_s, u"c"_s, std::nullopt},
        {u"a"_s, u"upper"_s, std::nullopt}, // others are compared as they stand
    };
    for (const Row &row : rows) {
        Draft draft = with(&Draft::name, row.name);
        draft.originalName = row.originalName;
        EXPECT_EQ(draft.nameConflict(tunnelsNamed({u"a"_s, u"b"_s, u""_s, u"Upper"_s})), row.conflict)
            << row.name.toStdString();
    }
    EXPECT_EQ(with(&Draft::name, u"a"_s).nameConflict({}), std::nullopt);
}

TEST(VeranoxTunnelDraft, AnUntouchedDraftMakesItsTunnel)
{
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same tunnels in every run
    const auto one = [&random](const QStringList &texts) {
        return texts.at(static_cast<qsizetype>(random() % static_cast<std::size_t>(texts.size())));
    };
    for (int round = 0; round < 500; ++round) {
        const VeranoxTunnel tunnel{.name = one({u"a"_s, u"db-1"_s, u"9_"_s}),
            .displayName = one({u""_s, u"Label"_s, u"Ünï ❤"_s}),
            .profile = one({u"acme"_s, u"work"_s}),
            .mode = one({u"native"_s, u"ssh"_s}),
            .listen = one({u""_s, u"127.0.0.1:45000"_s, u"[::1]:1"_s, u"localhost:65535"_s}),
            .target = one({u"db:1"_s, u"[fd7a::1]:5432"_s, u"DB.example:65535"_s}),
            .sshBastion = one({u"b"_s, u"Bastion.example"_s}),
            .sshUser = one({u"me"_s, u"root"_s}),
            .sshAuth = one({u"agent"_s, u"key"_s, u"password"_s}),
            .sshIdentity = one({u"/k"_s, u"/home/me/.ssh/id_ed25519"_s}),
            .disabled = random() % 2 == 0};
        const bool isSSH = tunnel.mode == u"ssh";
        const VeranoxEditableTunnelSSH ssh{.bastion = tunnel.sshBastion,
            .user = tunnel.sshUser,
            .auth = tunnel.sshAuth,
            .identityFile = tunnel.sshAuth == u"key" ? tunnel.sshIdentity : QString()};
        const VeranoxEditableTunnel expected{.displayName = tunnel.displayName,
            .profile = tunnel.profile,
            .mode = tunnel.mode,
            .listen = tunnel.listen,
            .target = tunnel.target,
            .ssh = isSSH ? std::optional(ssh) : std::nullopt,
            .disabled = tunnel.disabled};
        const Draft draft(tunnel, true);
        EXPECT_TRUE(draft.isReadyToSave());
        EXPECT_EQ(draft.normalName(), tunnel.name);
        ASSERT_EQ(draft.makeTunnel().value(), expected) << "round " << round;
    }
}

TEST(VeranoxTunnelDraft, IsNewWhileItReplacesNoTunnel)
{
    VeranoxTunnelDraft draft;
    EXPECT_TRUE(draft.isNew());
    draft.originalName = u"a"_s;
    EXPECT_FALSE(draft.isNew());
}
