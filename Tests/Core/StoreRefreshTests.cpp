#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using ::testing::ElementsAre;

class StoreRefresh : public StoreWorld { };

TEST_F(StoreRefresh, readsSixDocumentsAndGoesOnline)
{
    service->tunnels.answer({tunnel(u"db"_s, u"listening"_s)});
    service->publications.answer({publication(u"wiki"_s, u"listening"_s)});
    service->environment.answer({.tailscaledAvailable = false, .tailscaledBin = u"/opt/tailscaled"_s});
    refresh();
    EXPECT_EQ(service->refreshCalls(), QList<int>({1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_EQ(store->profiles().size(), 1);
    EXPECT_EQ(store->tunnels().value(0).name, u"db"_s);
    EXPECT_EQ(store->publications().value(0).name, u"wiki"_s);
    EXPECT_EQ(store->environment().tailscaledBin, u"/opt/tailscaled"_s);
    EXPECT_EQ(store->editableConfig(), VeranoxEditableConfig::emptyForFirstProfile());
    EXPECT_FALSE(store->isRefreshing());
    EXPECT_TRUE(log().isEmpty());
}

TEST_F(StoreRefresh, appliesResultsInAFixedOrderWhateverTheOrderOfArrival)
{
    service->profiles.hold();
    service->tunnels.answer({tunnel(u"db"_s, u"listening"_s)});
    refresh();
    EXPECT_TRUE(store->tunnels().isEmpty());
    EXPECT_TRUE(store->isRefreshing());
    QStringList order;
    Watches watches;
    watches.add([&] { return store->profiles(); }, [&] { order << u"profiles"_s; });
    watches.add([&] { return store->editableConfig(); }, [&] { order << u"document"_s; });
    watches.add([&] { return store->tunnels(); }, [&] { order << u"tunnels"_s; });
    watches.add([&] { return store->serviceState(); }, [&] { order << u"state"_s; });
    service->profiles.release();
    world.run();
    EXPECT_EQ(order, QStringList({u"profiles"_s, u"document"_s, u"tunnels"_s, u"state"_s}));
}

TEST_F(StoreRefresh, aSecondRequestReturnsAtOnceAndSendsNothing)
{
    service->profiles.hold();
    store->requestRefresh();
    store->requestRefresh();
    world.run();
    EXPECT_EQ(service->refreshCalls(), QList<int>({1, 1, 1, 1, 1, 1}));
    service->profiles.release();
    world.run();
    EXPECT_EQ(service->refreshCalls(), QList<int>({1, 1, 1, 1, 1, 1}));
    EXPECT_FALSE(store->isRefreshing());
}

TEST_F(StoreRefresh, allRequestsOfOneRefreshCarryOneCorrelationIdentifier)
{
    refresh();
    refresh();
    const QString first = service->profiles.correlationIDs.value(0);
    const QString second = service->profiles.correlationIDs.value(1);
    EXPECT_EQ(QUuid::fromString(first).toString(QUuid::WithoutBraces), first);
    EXPECT_EQ(first, first.toLower());
    EXPECT_NE(first, second);
    EXPECT_EQ(service->config.correlationIDs, QStringList({first, second}));
    EXPECT_EQ(service->editableConfig.correlationIDs, QStringList({first, second}));
    EXPECT_EQ(service->environment.correlationIDs, QStringList({first, second}));
    EXPECT_EQ(service->tunnels.correlationIDs, QStringList({first, second}));
    EXPECT_EQ(service->publications.correlationIDs, QStringList({first, second}));
}

TEST_F(StoreRefresh, keepsACorrelationIdentifierThatIsBoundAlready)
{
    const jobs::AmbientScope scope(u"bound-before"_s);
    refresh();
    EXPECT_EQ(service->tunnels.correlationIDs, QStringList({u"bound-before"_s}));
}

TEST_F(StoreRefresh, aFaultInAnOptionalReadKeepsItsOldValueAndStaysOnline)
{
    service->tunnels.answer({tunnel(u"db"_s, u"listening"_s)});
    service->publications.answer({publication(u"wiki"_s, u"listening"_s)});
    const VeranoxEnvironment known{.tailscaledAvailable = false, .tailscaledBin = u"/opt/tailscaled"_s};
    service->environment.answer(known);
    refresh();
    service->environment.fail(unavailable());
    service->tunnels.fail(VeranoxAPIFailure::refused(u"no"_s, 409));
    service->publications.fail(VeranoxAPIFailure::refused(u"no"_s, 409));
    refresh();
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_EQ(store->tunnels().size(), 1);
    EXPECT_EQ(store->publications().size(), 1);
    EXPECT_TRUE(store->environment() == known);
    EXPECT_TRUE(log().isEmpty());
    EXPECT_TRUE(store->lastActionMessage().isEmpty());
}

struct RequiredRead {
    const char *name;
    std::function<void(FakeAPIClient &, const VeranoxAPIFailure &)> fail;
};

class StoreRequiredRead : public StoreRefresh, public ::testing::WithParamInterface<RequiredRead> { };

TEST_P(StoreRequiredRead, failsTheRefreshAndEmptiesNothing)
{
    service->tunnels.answer({tunnel(u"db"_s, u"listening"_s)});
    refresh();
    GetParam().fail(*service, VeranoxAPIFailure::refused(u"The disk is full."_s, 409));
    service->tunnels.answer({});
    refresh();
    EXPECT_EQ(store->serviceState(), ServiceState::error(u"The disk is full."_s));
    EXPECT_EQ(log(), QStringList({u"[GUI] status refresh failed: The disk is full."_s}));
    EXPECT_EQ(store->profiles().size(), 1);
    EXPECT_EQ(store->tunnels().size(), 1);
    EXPECT_FALSE(store->isRefreshing());
    EXPECT_TRUE(store->lastActionMessage().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(each, StoreRequiredRead,
    ::testing::Values(RequiredRead{"profiles", [](auto &service, auto &error) { service.profiles.fail(error); }},
        RequiredRead{"config", [](auto &service, auto &error) { service.config.fail(error); }},
        RequiredRead{"document", [](auto &service, auto &error) { service.editableConfig.fail(error); }}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(StoreRefresh, logsALastingFailureOnceAndAnotherOneAgain)
{
    service->profiles.fail(unavailable());
    refresh();
    refresh();
    EXPECT_EQ(log().size(), 1);
    service->profiles.fail(VeranoxAPIFailure::refused(u"Another one."_s, 409));
    refresh();
    service->profiles.fail(unavailable());
    refresh();
    EXPECT_EQ(log(),
        QStringList({u"[GUI] status refresh failed: Veranox's local service is unavailable."_s,
            u"[GUI] status refresh failed: Another one."_s,
            u"[GUI] status refresh failed: Veranox's local service is unavailable."_s}));
}

TEST_F(StoreRefresh, comesBackOnlineByTheNextSuccess)
{
    service->profiles.fail(unavailable());
    refresh();
    EXPECT_EQ(store->serviceState().kind(), ServiceState::Kind::error);
    service->profiles.answer({});
    refresh();
    EXPECT_EQ(store->serviceState(), ServiceState::online());
    EXPECT_EQ(log().size(), 1);
}

TEST_F(StoreRefresh, aFailureWaitsForTheOtherFetchesAndCancelsThem)
{
    service->profiles.fail(unavailable());
    service->publications.hold();
    refresh();
    EXPECT_FALSE(store->isRefreshing()); // the held fetch was cancelled and has ended
    EXPECT_EQ(store->serviceState().kind(), ServiceState::Kind::error);
}

TEST_F(StoreRefresh, aCancelledRefreshChangesNothing)
{
    store->startRefreshLoop();
    service->profiles.hold();
    world.run(15s);
    ASSERT_TRUE(store->isRefreshing());
    const qsizetype observations = observed->snapshots.size();
    store->shutdown(); // cancels the loop and with it the refresh
    world.run();
    EXPECT_FALSE(store->isRefreshing());
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_TRUE(log().isEmpty());
    EXPECT_EQ(observed->snapshots.size(), observations);
}

TEST_F(StoreRefresh, aRefreshCancelledInItsLastStepsChangesNothingMore)
{
    store->startRefreshLoop();
    service->publications.hold();
    world.run(15s);
    ASSERT_TRUE(store->isRefreshing());
    store->shutdown();
    world.run();
    EXPECT_FALSE(store->isRefreshing());
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_TRUE(store->routerDraft() == VeranoxRouterSettingsDraft(VeranoxEditableRouterConfig::defaults()));
    EXPECT_TRUE(log().isEmpty());
}

TEST_F(StoreRefresh, aLoopThatIsCancelledWhileItSleepsSendsNothing)
{
    store->startRefreshLoop();
    world.run(1s);
    store->shutdown();
    world.run(1min);
    EXPECT_EQ(service->refreshCalls(), QList<int>({0, 0, 0, 0, 0, 0}));
}

TEST_F(StoreRefresh, whoseJobDiesIsOver)
{
    service->profiles.hold();
    {
        jobs::JobScope scope(world.queue);
        scope.start(store->refresh());
        world.run();
        ASSERT_TRUE(store->isRefreshing());
    }
    EXPECT_FALSE(store->isRefreshing());
    service->profiles.release();
    refresh();
    EXPECT_EQ(store->serviceState(), ServiceState::online());
}

TEST_F(StoreRefresh, aDraftThatIsEditedMeanwhileSurvives)
{
    refresh();
    service->publications.hold();
    refresh();
    ASSERT_TRUE(store->isRefreshing());
    VeranoxRouterSettingsDraft edited = store->routerDraft();
    edited.socks5Proxy = u"127.0.0.1:50001"_s;
    store->setRouterDraft(edited);
    service->publications.release();
    world.run();
    ASSERT_FALSE(store->isRefreshing());
    EXPECT_EQ(store->routerDraft().socks5Proxy, u"127.0.0.1:50001"_s);
}

TEST_F(StoreRefresh, aDraftWithEditsSurvivesAndOneWithoutFollowsTheDocument)
{
    refresh();
    EXPECT_EQ(store->routerDraft().httpProxy, u"127.0.0.1:43100"_s);
    EXPECT_FALSE(store->routerDraftHasChanges());

    VeranoxEditableConfig moved = VeranoxEditableConfig::emptyForFirstProfile();
    moved.router.httpProxy = u"127.0.0.1:50000"_s;
    service->editableConfig.answer(moved);
    refresh();
    EXPECT_EQ(store->routerDraft().httpProxy, u"127.0.0.1:50000"_s);

    VeranoxRouterSettingsDraft edited = store->routerDraft();
    edited.socks5Proxy = u"127.0.0.1:50001"_s;
    store->setRouterDraft(edited);
    for (int round = 0; round < 3; ++round)
        refresh();
    EXPECT_EQ(store->routerDraft().socks5Proxy, u"127.0.0.1:50001"_s);
    EXPECT_TRUE(store->routerDraftHasChanges());
}

TEST_F(StoreRefresh, anInvalidRouterDraftCountsAsChangedAndSurvives)
{
    refresh();
    VeranoxRouterSettingsDraft edited = store->routerDraft();
    edited.pacListen = u"nonsense"_s;
    store->setRouterDraft(edited);
    EXPECT_TRUE(store->routerDraftHasChanges());
    refresh();
    EXPECT_EQ(store->routerDraft().pacListen, u"nonsense"_s);
}

TEST_F(StoreRefresh, noDraftHasChangesBeforeADocumentIsThere)
{
    EXPECT_FALSE(store->routerDraftHasChanges());
    EXPECT_FALSE(store->profileDraftHasChanges());
}

TEST_F(StoreRefresh, tellsTheObserverAfterEachWrite)
{
    service->tunnels.answer({tunnel(u"db"_s, u"listening"_s)});
    refresh();
    ASSERT_EQ(observed->snapshots.size(), 4); // profiles, tunnels, publications, state
    EXPECT_EQ(observed->snapshots[0].profiles.size(), 1);
    EXPECT_TRUE(observed->snapshots[0].tunnels.isEmpty());
    EXPECT_EQ(observed->snapshots[1].tunnels.size(), 1);
    EXPECT_EQ(observed->snapshots[2].service, ServiceState::offline());
    EXPECT_EQ(observed->snapshots[3].service, ServiceState::online());
    EXPECT_FALSE(observed->snapshots[3].isBusy);
}

TEST_F(StoreRefresh, announcesManyChangesOnceATurnAndNoneWhenNothingChanged)
{
    QSignalSpy changes(store.get(), &VeranoxStore::changed);
    store->setDiagnosticTarget(u"a"_s);
    store->setDiagnosticTarget(u"b"_s);
    store->setRequestedSettingsSection(VeranoxSettingsSelection(VeranoxSettingsSelection::Section::about));
    EXPECT_EQ(changes.count(), 0); // never inside the write
    world.run();
    EXPECT_EQ(changes.count(), 1);
    const ChangeCount targets([&] { return store->diagnosticTarget(); });
    store->setDiagnosticTarget(u"b"_s);
    world.run();
    EXPECT_EQ(targets.count(), 0);
    EXPECT_EQ(changes.count(), 1);
}
