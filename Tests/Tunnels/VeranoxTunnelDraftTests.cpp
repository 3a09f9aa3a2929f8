#include "Tests/Support/QtPrinters.h"
#include "Tunnels/VeranoxTunnelDraft.h"
#include <QList>
#include <gmock/gmock.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

using Draft = VeranoxTunnelDraft;
using Auth = VeranoxTunnelSSHAuth;

Draft nativeDraft()
{
    Draft draft;
    draft.name = u"db"_s;
    draft.profile = u"acme"_s;
    draft.target = u"db.internal.example:5432"_s;
    return draft;
}

Draft sshDraft(Auth auth)
{
    Draft draft = nativeDraft();
    draft.useSSH = true;
    draft.bastion = u"bastion"_s;
    draft.sshUser = u"me"_s;
    draft.sshAuth = auth;
    return draft;
}

Draft with(QString Draft::*field, const QString &text, Draft draft = nativeDraft())
{
    draft.*field = text;
    return draft;
}

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

QString problem(const Draft &draft)
{
    const auto tunnel = draft.makeTunnel();
    return tunnel ? QString() : tunnel.error().message;
}

const QString badName =
    u"Tunnel name must be lowercase letters, numbers, hyphen, or underscore, and be at most 63 characters."_s;
const QString badTarget = u"Target must be host:port (for example db.internal.example:5432)."_s;

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

TEST(VeranoxTunnelDraft, Names)
{
    struct Row {
        QString typed;
        QString normal;
        bool isValid;
        QString problem;
    };
    const QList<Row> rows{
        {u"  DB-1 \n"_s, u"db-1"_s, true, {}}, {u"9lives"_s, u"9lives"_s, true, {}},
        {QString(63, u'a'), QString(63, u'a'), true, {}}, {QString(64, u'a'), QString(64, u'a'), false, badName},
        {u"-db"_s, u"-db"_s, false, badName}, {u"_db"_s, u"_db"_s, false, badName},
        {u"d b"_s, u"d b"_s, false, badName}, {u"\u00A0\u2003db\u2028\u0085"_s, u"db"_s, true, {}},
        {u"\u200Bdb"_s, u"\u200Bdb"_s, false, badName}, // a zero-width space is no white space
        {u"\uFEFFdb"_s, u"\uFEFFdb"_s, false, badName},
        {u"\u212A"_s, u"k"_s, true, {}}, // the Kelvin sign's lower case is the letter
        {u"\u0130"_s, u"i\u0307"_s, false, badName}, {u"d\u0301b"_s, u"d\u0301b"_s, false, badName},
        {u"\r\n \t"_s, u""_s, true, u"Tunnel name is required."_s}, // no error while empty
    };
    for (const Row &row : rows) {
        const Draft draft = with(&Draft::name, row.typed);
        EXPECT_EQ(draft.normalName(), row.normal);
        EXPECT_EQ(draft.isValidName(), row.isValid) << row.typed.toStdString();
        EXPECT_EQ(problem(draft), row.problem) << row.typed.toStdString();
        EXPECT_EQ(draft.isReadyToSave(), row.problem.isEmpty()) << row.typed.toStdString();
    }
}

TEST(VeranoxTunnelDraft, Targets)
{
    struct Row {
        QString typed;
        bool isValid;
        bool isReady;
    };
    const QList<Row> rows{
        {u""_s, true, false},
        {u" \n"_s, true, false},
        {u"[::1]:5432"_s, true, true},
        {u"[::1]"_s, false, false},
        {u"[::1]5432"_s, false, false},
        {u"::1"_s, true, true}, // host ":", port 1: split at the last colon
        {u" DB.internal:5432 "_s, true, true},
        {u":5432"_s, false, false},
        {u"db"_s, false, false},
        {u"db:0"_s, false, false},
        {u"db:65535"_s, true, true},
        {u"db:65536"_s, false, false},
        {u"db:x"_s, false, false},
    };
    for (const Row &row : rows) {
        const Draft draft = with(&Draft::target, row.typed);
        EXPECT_EQ(draft.isValidTarget(), row.isValid) << row.typed.toStdString();
        EXPECT_EQ(draft.isReadyToSave(), row.isReady) << row.typed.toStdString();
        EXPECT_EQ(problem(draft), row.isReady ? QString() : badTarget) << row.typed.toStdString();
    }
    EXPECT_EQ(with(&Draft::target, u" DB.internal:5432 "_s).makeTunnel()->target, u"DB.internal:5432");
}

TEST(VeranoxTunnelDraft, NamesTheFirstProblem)
{
    struct Row {
        QString Draft::*field;
        QString wrong;
        QString right;
        QString problem;
    };
    const auto fixOneByOne = [](Draft draft, const QList<Row> &rows) {
        for (auto row = rows.rbegin(); row != rows.rend(); ++row)
            draft.*row->field = row->wrong;
        for (const Row &row : rows) {
            EXPECT_EQ(problem(draft), row.problem);
            draft.*row.field = row.right;
        }
        EXPECT_EQ(problem(draft), QString());
    };
    const QString badEndpoint = u"Local endpoint must be bound to loopback."_s;
    const QString incomplete = u"SSH tunnels need a bastion host and an SSH user."_s;
    const QList<Row> common{
        {&Draft::name, u" "_s, u"-"_s, u"Tunnel name is required."_s},
        {&Draft::name, u"-"_s, u"db"_s, badName},
        {&Draft::profile, u""_s, u" "_s, u"A profile is required."_s},
        {&Draft::target, u"db"_s, u"db:1"_s, badTarget},
    };
    const QList<Row> endpoint{{&Draft::listen, u"0.0.0.0:80"_s, u" LocalHost:80 "_s, badEndpoint}};
    const QList<Row> ssh{
        {&Draft::bastion, u" "_s, u"b"_s, incomplete},
        {&Draft::sshUser, u"\n"_s, u"u"_s, incomplete},
    };
    const QList<Row> key{
        {&Draft::identityFile, u" "_s, u"id_rsa"_s, u"Choose a private key, or switch to SSH agent or password."_s},
        {&Draft::identityFile, u"~/id_rsa"_s, u" /id_rsa"_s, u"The private key must be an absolute path."_s},
    };
    const QList<Row> password{{&Draft::password, u" "_s, u"x"_s, u"Enter the SSH password."_s}};
    fixOneByOne(nativeDraft(), common + endpoint);
    fixOneByOne(sshDraft(Auth::agent), common + ssh + endpoint);
    fixOneByOne(sshDraft(Auth::key), common + ssh + key + endpoint);
    fixOneByOne(sshDraft(Auth::password), common + ssh + password + endpoint);
}

TEST(VeranoxTunnelDraft, LocalEndpoints)
{
    struct Row {
        QString typed;
        QString made;
    };
    const QList<Row> rows{
        {u""_s, u""_s},
        {u" \n"_s, u""_s},
        {u" LocalHost:80 "_s, u"localhost:80"_s},
        {u"[::1]:80"_s, u"[::1]:80"_s},
        {u"::1:80"_s, u"[::1]:80"_s},
        {u"127.0.0.1"_s, u"Local endpoint must use host:port."_s},
        {u":80"_s, u"Local endpoint host is required."_s},
        {u"localhost:http"_s, u"Local endpoint must be a number."_s},
        {u"localhost:0"_s, u"Local endpoint must be between 1 and 65535."_s},
        {u"192.168.1.5:80"_s, u"Local endpoint must be bound to loopback."_s},
    };
    for (const Row &row : rows) {
        const Draft draft = with(&Draft::listen, row.typed);
        const auto tunnel = draft.makeTunnel();
        EXPECT_EQ(tunnel ? tunnel->listen : tunnel.error().message, row.made) << row.typed.toStdString();
        EXPECT_TRUE(draft.isReadyToSave()) << "readiness does not look at it";
    }
}

TEST(VeranoxTunnelDraft, ReadinessOfSSHTunnels)
{
    EXPECT_TRUE(sshDraft(Auth::agent).isReadyToSave());
    EXPECT_FALSE(with(&Draft::bastion, u" "_s, sshDraft(Auth::agent)).isReadyToSave());
    EXPECT_FALSE(with(&Draft::sshUser, u" "_s, sshDraft(Auth::agent)).isReadyToSave());
    EXPECT_TRUE(with(&Draft::bastion, u""_s).isReadyToSave()) << "a native tunnel has no bastion";
    EXPECT_FALSE(with(&Draft::profile, u""_s).isReadyToSave());
    EXPECT_FALSE(with(&Draft::identityFile, u" "_s, sshDraft(Auth::key)).isReadyToSave());

    const Draft relativeKey = with(&Draft::identityFile, u"id_rsa"_s, sshDraft(Auth::key));
    EXPECT_TRUE(relativeKey.isReadyToSave());
    EXPECT_EQ(problem(relativeKey), u"The private key must be an absolute path.");
}

TEST(VeranoxTunnelDraft, WhenAPasswordMustBeTyped)
{
    Draft draft = sshDraft(Auth::password);
    EXPECT_TRUE(draft.needsPassword());
    EXPECT_FALSE(draft.isReadyToSave());
    draft.password = u" \n"_s;
    EXPECT_TRUE(draft.needsPassword()) << "blanks are none";
    EXPECT_FALSE(with(&Draft::password, u" x "_s, draft).needsPassword());
    draft.hasStoredPassword = true;
    EXPECT_FALSE(draft.needsPassword());
    EXPECT_TRUE(draft.isReadyToSave());
    EXPECT_TRUE(draft.makeTunnel());
    EXPECT_FALSE(sshDraft(Auth::key).needsPassword());
    Draft native = sshDraft(Auth::password);
    native.useSSH = false;
    EXPECT_FALSE(native.needsPassword());
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
