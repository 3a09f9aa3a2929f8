#include "Tests/Support/QtPrinters.h"
#include "Tests/Tunnels/TunnelDrafts.h"
#include <QList>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using namespace tunnel_drafts;

namespace {

QString problem(const Draft &draft)
{
    const auto tunnel = draft.makeTunnel();
    return tunnel ? QString() : tunnel.error().message;
}

const QString badName =
    u"Tunnel name must be lowercase letters, numbers, hyphen, or underscore, and be at most 63 characters."_s;
const QString badTarget = u"Target must be host:port (for example db.internal.example:5432)."_s;

} // namespace

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
