#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class StoreDerived : public StoreWorld { };

TEST_F(StoreDerived, beginsOfflineWithTheStatedDefaults)
{
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_EQ(store->config().router.httpProxy, u"127.0.0.1:43100"_s);
    EXPECT_EQ(store->config().router.socks5Proxy, u"127.0.0.1:43101"_s);
    EXPECT_EQ(store->config().router.pacListen, u"127.0.0.1:43180"_s);
    EXPECT_EQ(store->config().router.profileHTTPProxyBase, 43110);
    EXPECT_EQ(store->config().router.profileSOCKS5ProxyBase, 43111);
    EXPECT_EQ(store->config().router.profileUDPPortBase, 43400);
    EXPECT_EQ(store->config().router.profileHostnameBase, u"veranox"_s);
    EXPECT_EQ(store->config().router.tunnelListenBase, 43300);
    EXPECT_TRUE(store->environment().tailscaledAvailable);
    EXPECT_EQ(store->environment().tailscaledBin, u"tailscaled"_s);
    EXPECT_FALSE(store->editableConfig());
    EXPECT_TRUE(store->profiles().isEmpty() && store->tunnels().isEmpty() && store->publications().isEmpty());
    EXPECT_TRUE(store->runtimeLog().isEmpty() && store->lastActionMessage().isEmpty());
    EXPECT_FALSE(store->isRefreshing() || store->isDiagnosing() || store->isSavingSettings());
    EXPECT_FALSE(store->isCreatingProfile() || store->isQuitting() || store->isRestartingRouter());
    EXPECT_FALSE(store->routerNeedsRestart());
    EXPECT_FALSE(store->pathReport() || store->runtimeLogPersistenceError() || store->testingProfileName());
    EXPECT_FALSE(store->profileTestFeedback() || store->loginPrompt() || store->routerRestartPrompt());
    EXPECT_FALSE(store->requestedSettingsSection());
    EXPECT_EQ(store->profileDraft().name, u"tailnet1"_s);
    EXPECT_TRUE(store->diagnosticTarget().isEmpty());
    EXPECT_EQ(store->menuBarPulse(), 1.0);
    EXPECT_EQ(store->pacURL(), QUrl(u"http://127.0.0.1:43180/proxy.pac"_s));
}

TEST_F(StoreDerived, statusWordsFollowTheState)
{
    EXPECT_EQ(store->statusTitle(), u"Offline"_s);
    EXPECT_EQ(store->routerStatusDetail(), u"Start Veranox to enable local routing"_s);
    EXPECT_TRUE(store->statusActionRestartsService());
    refresh();
    EXPECT_EQ(store->statusTitle(), u"Online"_s);
    EXPECT_EQ(store->routerStatusDetail(), u"Managed by Veranox service"_s);
    EXPECT_FALSE(store->statusActionRestartsService());
    service->profiles.fail(unavailable());
    refresh();
    EXPECT_EQ(store->statusTitle(), u"Error"_s);
    EXPECT_EQ(store->routerStatusDetail(), u"Start Veranox to enable local routing"_s);
    EXPECT_TRUE(store->statusActionRestartsService());
    EXPECT_EQ(store->menuBarIcon(), MenuBarIcon::failed);
}

TEST(ServiceStateWords, areFixed)
{
    EXPECT_EQ(ServiceState::starting().title(), u"Starting"_s);
    EXPECT_EQ(ServiceState::starting().logWord(), u"starting"_s);
    EXPECT_EQ(ServiceState::online().title(), u"Online"_s);
    EXPECT_EQ(ServiceState::online().logWord(), u"online"_s);
    EXPECT_EQ(ServiceState::offline().title(), u"Offline"_s);
    EXPECT_EQ(ServiceState::offline().logWord(), u"offline"_s);
    EXPECT_EQ(ServiceState::error(u"x"_s).title(), u"Error"_s);
    EXPECT_EQ(ServiceState::error(u"x"_s).logWord(), u"error"_s);
    EXPECT_EQ(ServiceState::error(u"x"_s), ServiceState::error(u"x"_s));
    EXPECT_NE(ServiceState::error(u"x"_s), ServiceState::error(u"y"_s));
    EXPECT_NE(ServiceState::error(QString()), ServiceState::offline());
}

struct IconRow {
    const char *name;
    QList<VeranoxProfile> profiles;
    QList<VeranoxTunnel> tunnels;
    QList<VeranoxPublication> publications;
    MenuBarIcon icon;
};

class StoreIcon : public StoreDerived, public ::testing::WithParamInterface<IconRow> {
public:
    using StoreDerived::profile;
    using StoreDerived::publication;
    using StoreDerived::tunnel;
    static QList<VeranoxProfile> healthy() { return {profile(u"home"_s, true, u"Running"_s)}; }
    static QList<VeranoxProfile> with(bool ok, const QString &state) { return healthy() << profile(u"p"_s, ok, state); }
};

TEST_P(StoreIcon, whileOnline)
{
    service->profiles.answer(GetParam().profiles);
    service->tunnels.answer(GetParam().tunnels);
    service->publications.answer(GetParam().publications);
    refresh();
    ASSERT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_EQ(store->menuBarIcon(), GetParam().icon);
}

static QList<IconRow> iconRows()
{
    using T = StoreIcon;
    const auto tunnels = [](auto... row) { return QList<VeranoxTunnel>{T::tunnel(u"t"_s, row...)}; };
    const auto publications = [](auto... row) { return QList<VeranoxPublication>{T::publication(u"p"_s, row...)}; };
    const QList<VeranoxTunnel> noTunnels;
    const QList<VeranoxPublication> none;
    using enum MenuBarIcon;
    return {
        {"noProfiles", {}, noTunnels, none, offline},
        {"noProfilesWithAFailedTunnel", {}, tunnels(u"error"_s), none, offline},
        {"allWell", T::healthy(), noTunnels, none, normal},
        {"settlingWithoutAWord", T::with(false, u""_s), noTunnels, none, starting},
        {"settlingNoState", T::with(false, u"NoState"_s), noTunnels, none, starting},
        {"settlingStarting", T::with(false, u"Starting"_s), noTunnels, none, starting},
        {"okWhileStarting", T::with(true, u"Starting"_s), noTunnels, none, normal},
        {"caseMatters", T::with(false, u"starting"_s), noTunnels, none, attention},
        {"noTrimming", T::with(false, u" "_s), noTunnels, none, attention},
        {"needsLogin", T::with(false, u"NeedsLogin"_s), noTunnels, none, attention},
        {"attentionBeforeSettling", T::with(false, u"Starting"_s), tunnels(u"error"_s), none, attention},
        {"tunnelError", T::healthy(), tunnels(u"error"_s), none, attention},
        {"tunnelErrorOtherCase", T::healthy(), tunnels(u"Error"_s), none, normal},
        {"tunnelLastError", T::healthy(), tunnels(u"listening"_s, u"refused"_s), none, attention},
        {"tunnelBlankLastError", T::healthy(), tunnels(u"listening"_s, u" "_s), none, attention},
        {"disabledTunnel", T::healthy(), tunnels(u"error"_s, u"refused"_s, true), none, normal},
        {"publicationError", T::healthy(), noTunnels, publications(u"error"_s), attention},
        {"publicationLastError", T::healthy(), noTunnels, publications(u"listening"_s, u"refused"_s), attention},
        {"publicationBlankLastError", T::healthy(), noTunnels, publications(u"listening"_s, u" \n"_s), normal},
        {"blockedPublication", T::healthy(), noTunnels, publications(u"blocked"_s, u"funnel"_s), normal},
        {"disabledPublication", T::healthy(), noTunnels, publications(u"error"_s, u"refused"_s, true), normal},
    };
}

INSTANTIATE_TEST_SUITE_P(
    each, StoreIcon, ::testing::ValuesIn(iconRows()), [](const auto &row) { return std::string(row.param.name); });

TEST_F(StoreDerived, oldListsDoNotShowInTheIconOfAnotherState)
{
    service->tunnels.answer({tunnel(u"t"_s, u"error"_s)});
    refresh();
    EXPECT_EQ(store->menuBarIcon(), MenuBarIcon::attention);
    service->profiles.fail(unavailable());
    refresh();
    EXPECT_EQ(store->menuBarIcon(), MenuBarIcon::failed);
}

// ---- The pulse

class StorePulse : public StoreWorld { };

TEST_F(StorePulse, walksItsTableWhileTheIconIsStartingAndRestsAtOne)
{
    service->profiles.answer({profile(u"home"_s, false, u"Starting"_s)});
    refresh();
    QList<double> phases{store->menuBarPulse()};
    for (int step = 0; step < 7; ++step) {
        world.run(180ms);
        phases.append(store->menuBarPulse());
    }
    EXPECT_EQ(phases, QList<double>({0.35, 0.55, 0.8, 1.0, 0.8, 0.55, 0.35, 0.55}));
    service->profiles.answer({profile(u"home"_s, true, u"Running"_s)});
    refresh();
    EXPECT_EQ(store->menuBarPulse(), 1.0);
    const ChangeCount steps([&] { return store->menuBarPulse(); });
    world.run(10s);
    EXPECT_EQ(steps.count(), 0);
}

TEST_F(StorePulse, startsAgainFromTheFirstPhase)
{
    for (int round = 0; round < 3; ++round) {
        service->profiles.answer({profile(u"home"_s, false, u""_s)});
        refresh();
        EXPECT_EQ(store->menuBarPulse(), 0.35);
        world.run(200ms);
        EXPECT_EQ(store->menuBarPulse(), 0.55);
        service->profiles.answer({profile(u"home"_s, true, u"Running"_s)});
        refresh();
        EXPECT_EQ(store->menuBarPulse(), 1.0);
    }
}

TEST_F(StorePulse, ringsNoAlarmAtRest)
{
    refresh();
    const int rings = world.clock.rings;
    world.run(1h);
    EXPECT_EQ(world.clock.rings, rings);
}

// ---- Mutations and refreshes interleaved

class StoreGenerations : public StoreWorld { };

TEST_F(StoreGenerations, aRefreshThatBeganBeforeAMutationDropsItsOlderLists)
{
    service->tunnels.answer({tunnel(u"old"_s, u"listening"_s)});
    service->publications.answer({publication(u"old"_s, u"listening"_s)});
    service->tunnels.hold();
    refresh();
    store->adoptTunnels({});
    store->adoptPublications({});
    service->tunnels.release();
    world.run();
    EXPECT_TRUE(store->tunnels().isEmpty());
    EXPECT_TRUE(store->publications().isEmpty());
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    refresh();
    EXPECT_EQ(store->tunnels().size(), 1);
    EXPECT_EQ(store->publications().size(), 1);
}

TEST_F(StoreGenerations, eachListHasItsOwnCount)
{
    service->tunnels.answer({tunnel(u"new"_s, u"listening"_s)});
    service->publications.answer({publication(u"old"_s, u"listening"_s)});
    service->tunnels.hold();
    refresh();
    store->adoptPublications({});
    service->tunnels.release();
    world.run();
    EXPECT_EQ(store->tunnels().size(), 1);
    EXPECT_TRUE(store->publications().isEmpty());
}
