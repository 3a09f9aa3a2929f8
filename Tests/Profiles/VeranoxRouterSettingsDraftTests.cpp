#include "Profiles/VeranoxRouterSettingsDraft.h"
#include "Tests/Support/QtPrinters.h"
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

using Draft = VeranoxRouterSettingsDraft;
using Field = QString Draft::*;

Draft defaultDraft()
{
    return Draft(VeranoxEditableRouterConfig::defaults());
}

Draft with(Field field, const QString &text, Draft draft = defaultDraft())
{
    draft.*field = text;
    return draft;
}

QString problem(const Draft &draft)
{
    const auto router = draft.makeRouter(VeranoxEditableRouterConfig::defaults());
    return router ? QString() : router.error().message;
}

VeranoxEditableRouterConfig made(const Draft &draft)
{
    return draft.makeRouter({}).value();
}

struct Row {
    Field field;
    QString text;
    QString problem;
};

} // namespace

TEST(VeranoxRouterSettingsDraft, ShowsTheRouterAsText)
{
    const Draft draft = defaultDraft();
    EXPECT_EQ(draft.httpProxy, u"127.0.0.1:43100");
    EXPECT_EQ(draft.socks5Proxy, u"127.0.0.1:43101");
    EXPECT_EQ(draft.pacListen, u"127.0.0.1:43180");
    EXPECT_EQ(draft.profileHTTPProxyBase, u"43110");
    EXPECT_EQ(draft.profileSOCKS5ProxyBase, u"43111");
    EXPECT_EQ(draft.profileUDPPortBase, u"43400");
    EXPECT_EQ(draft.profileHostnameBase, u"veranox");
    EXPECT_EQ(draft.tunnelListenBase, u"43300");
}

TEST(VeranoxRouterSettingsDraft, MakesTheRouterThatItShows)
{
    EXPECT_EQ(made(defaultDraft()), VeranoxEditableRouterConfig::defaults());
}

TEST(VeranoxRouterSettingsDraft, NormalisesWhatIsTyped)
{
    EXPECT_EQ(made(with(&Draft::httpProxy, u" LocalHost:80 "_s)).httpProxy, u"localhost:80");
    EXPECT_EQ(made(with(&Draft::socks5Proxy, u"::1:80"_s)).socks5Proxy, u"[::1]:80");
    EXPECT_EQ(made(with(&Draft::pacListen, u"[::1]:80"_s)).pacListen, u"[::1]:80");
    EXPECT_EQ(made(with(&Draft::profileUDPPortBase, u"0"_s)).profileUDPPortBase, 0);
    EXPECT_EQ(made(with(&Draft::profileHostnameBase, u" Veranox-2 "_s)).profileHostnameBase, u"veranox-2");
    EXPECT_EQ(made(with(&Draft::tunnelListenBase, u"+7"_s)).tunnelListenBase, 7);
}

TEST(VeranoxRouterSettingsDraft, NamesTheFieldThatIsWrong)
{
    const QString badBase = u"Hostname base can contain letters, numbers, and hyphens only."_s;
    const QList<Row> rows{
        {&Draft::httpProxy, u"127.0.0.1"_s, u"HTTP proxy must use host:port."_s},
        {&Draft::httpProxy, u":8080"_s, u"HTTP proxy host is required."_s},
        {&Draft::httpProxy, u"127.0.0.1:0"_s, u"HTTP proxy must be between 1 and 65535."_s},
        {&Draft::httpProxy, u"127.0.0.1:70000"_s, u"HTTP proxy must be between 1 and 65535."_s},
        {&Draft::socks5Proxy, u"127.0.0.1:x"_s, u"SOCKS5 proxy must be a number."_s},
        {&Draft::pacListen, u"0.0.0.0:80"_s, u"PAC server must be bound to loopback."_s},
        {&Draft::profileHTTPProxyBase, u"0"_s, u"Profile HTTP base must be between 1 and 65535."_s},
        {&Draft::profileHTTPProxyBase, u" 1"_s, u"Profile HTTP base must be a number."_s},
        {&Draft::profileSOCKS5ProxyBase, u""_s, u"Profile SOCKS5 base must be a number."_s},
        {&Draft::profileUDPPortBase, u"x"_s, u"Profile UDP base must be a number."_s},
        {&Draft::profileUDPPortBase, u"70000"_s, u"Profile UDP base must be between 0 and 65535."_s},
        {&Draft::profileHostnameBase, u" "_s, u"Hostname base is required."_s},
        {&Draft::profileHostnameBase, u"-x"_s, badBase},
        {&Draft::profileHostnameBase, u"x-"_s, badBase},
        {&Draft::profileHostnameBase, u"a_b"_s, badBase},
        {&Draft::profileHostnameBase, u"a b"_s, badBase},
        {&Draft::profileHostnameBase, u"é"_s, badBase},
        {&Draft::tunnelListenBase, u"0"_s, u"Tunnel base port must be between 1 and 65535."_s},
    };
    for (const Row &row : rows)
        EXPECT_EQ(problem(with(row.field, row.text)), row.problem) << row.text.toStdString();
}

TEST(VeranoxRouterSettingsDraft, TheFirstProblemInTheOrderOfTheFieldsCounts)
{
    Draft draft;
    for (const auto &[field, label] : QList<std::pair<Field, QString>>{
             {&Draft::httpProxy, u"HTTP proxy must use host:port."_s},
             {&Draft::socks5Proxy, u"SOCKS5 proxy must use host:port."_s},
             {&Draft::pacListen, u"PAC server must use host:port."_s},
             {&Draft::profileHTTPProxyBase, u"Profile HTTP base must be a number."_s},
             {&Draft::profileSOCKS5ProxyBase, u"Profile SOCKS5 base must be a number."_s},
             {&Draft::profileUDPPortBase, u"Profile UDP base must be a number."_s},
             {&Draft::profileHostnameBase, u"Hostname base is required."_s},
             {&Draft::tunnelListenBase, u"Tunnel base port must be a number."_s},
         }) {
        EXPECT_EQ(problem(draft), label);
        draft.*field = defaultDraft().*field;
    }
    EXPECT_EQ(problem(draft), QString());
}

TEST(VeranoxRouterSettingsDraft, PortsDifferAndTheLaterOneIsNamed)
{
    const QList<std::pair<Field, QString>> claims{
        {&Draft::httpProxy, u"HTTP proxy"_s},
        {&Draft::socks5Proxy, u"SOCKS5 proxy"_s},
        {&Draft::pacListen, u"PAC server"_s},
        {&Draft::profileHTTPProxyBase, u"Profile HTTP base"_s},
        {&Draft::profileSOCKS5ProxyBase, u"Profile SOCKS5 base"_s},
        {&Draft::tunnelListenBase, u"Tunnel base port"_s},
        {&Draft::profileUDPPortBase, u"Profile UDP base"_s},
    };
    const auto claim = [&](qsizetype index) { return index < 3 ? u"localhost:7"_s : u"7"_s; };
    for (qsizetype later = 1; later < claims.size(); ++later) {
        for (qsizetype earlier = 0; earlier < later; ++earlier) {
            const Draft draft = with(claims[later].first, claim(later), with(claims[earlier].first, claim(earlier)));
            EXPECT_EQ(problem(draft), claims[later].second + u" uses a port that is already assigned."_s);
        }
    }
}

TEST(VeranoxRouterSettingsDraft, HostsDoNotMakePortsDiffer)
{
    const Draft draft = with(&Draft::pacListen, u"[::1]:43100"_s);
    EXPECT_EQ(problem(draft), u"PAC server uses a port that is already assigned.");
}

TEST(VeranoxRouterSettingsDraft, AFormErrorComesBeforeACollision)
{
    const Draft draft = with(&Draft::tunnelListenBase, u"x"_s, with(&Draft::pacListen, u"127.0.0.1:43100"_s));
    EXPECT_EQ(problem(draft), u"Tunnel base port must be a number.");
}

TEST(VeranoxRouterSettingsDraft, HasChangesOnlyAgainstALoadedDocument)
{
    const auto document = std::optional(VeranoxEditableConfig::emptyForFirstProfile());
    EXPECT_FALSE(routerDraftHasChanges(with(&Draft::httpProxy, u"x"_s), std::nullopt));
    EXPECT_FALSE(routerDraftHasChanges(defaultDraft(), document));
    EXPECT_FALSE(routerDraftHasChanges(with(&Draft::profileHostnameBase, u" VERANOX"_s), document));
    EXPECT_TRUE(routerDraftHasChanges(with(&Draft::httpProxy, u"x"_s), document));
    EXPECT_TRUE(routerDraftHasChanges(with(&Draft::httpProxy, u"127.0.0.1:1"_s), document));
}
