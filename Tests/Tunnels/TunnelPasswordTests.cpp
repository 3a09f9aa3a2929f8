// Where the passwords of SSH tunnels go.
#include "Tests/Support/JobResult.h"
#include "Tests/Support/StoreWorld.h"
#include "Tunnels/VeranoxNoTunnelSecrets.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Auth = VeranoxTunnelSSHAuth;

class TunnelPasswordTests : public StoreWorld {
protected:
    TunnelPasswordTests()
    {
        service->tunnelSave.answer({});
        service->tunnelSecret.answer({});
        service->tunnelDeletion.answer({});
        service->tunnelRestart.answer({});
    }

    static VeranoxTunnel sshTunnel(const QString &name, const QString &auth = u"password"_s)
    {
        return {.name = name, .mode = u"ssh"_s, .sshAuth = auth};
    }

    static VeranoxTunnelDraft draft(const std::optional<QString> &originalName, const QString &name,
        const QString &typed, Auth auth = Auth::password)
    {
        VeranoxTunnelDraft draft;
        draft.originalName = originalName;
        draft.name = name;
        draft.profile = u"home"_s;
        draft.target = u"db:5432"_s;
        draft.useSSH = true;
        draft.bastion = u"bastion"_s;
        draft.sshUser = u"me"_s;
        draft.sshAuth = auth;
        draft.identityFile = u"/key"_s;
        draft.password = typed;
        draft.hasStoredPassword = true;
        return draft;
    }

    void save(const VeranoxTunnelDraft &draft)
    {
        EXPECT_EQ(resultOf(world, store->saveTunnelDraft(draft)), std::nullopt);
    }

    QStringList sent() const { return service->tunnelSecret.arguments; }

    using Items = QMap<QString, QString>;
};

TEST_F(TunnelPasswordTests, ATypedPasswordIsKeptAndSentWithoutItsBlanks)
{
    save(draft(std::nullopt, u"A"_s, u" se cret\n"_s));
    EXPECT_EQ(secrets->items, Items({{u"a"_s, u"se cret"_s}}));
    EXPECT_EQ(sent(), QStringList({u"a se cret"_s}));
}

TEST_F(TunnelPasswordTests, AnEmptyFieldSendsTheStoredPasswordAgain)
{
    secrets->items = {{u"a"_s, u"kept"_s}};
    save(draft(u"a"_s, u"a"_s, u" "_s));
    EXPECT_EQ(secrets->items, Items({{u"a"_s, u"kept"_s}}));
    EXPECT_EQ(sent(), QStringList({u"a kept"_s}));
}

TEST_F(TunnelPasswordTests, WithoutAnyPasswordNothingIsKeptOrSent)
{
    save(draft(u"a"_s, u"b"_s, u""_s));
    EXPECT_EQ(secrets->calls, QStringList({u"read a"_s}));
    EXPECT_EQ(sent(), QStringList());
}

TEST_F(TunnelPasswordTests, ARenameMovesTheItem)
{
    struct Row {
        QString typed;
        QString kept;
    };
    for (const Row &row : {Row{u""_s, u"old"_s}, Row{u"new"_s, u"new"_s}}) {
        secrets->items = {{u"a"_s, u"old"_s}, {u"other"_s, u"x"_s}};
        save(draft(u"a"_s, u" B"_s, row.typed));
        EXPECT_EQ(secrets->items, Items({{u"b"_s, row.kept}, {u"other"_s, u"x"_s}}));
        EXPECT_EQ(sent().last(), u"b "_s + row.kept);
    }
}

TEST_F(TunnelPasswordTests, AWriteThatFailsKeepsTheOldItemAndStillSends)
{
    secrets->isBroken = true;
    secrets->items = {{u"a"_s, u"old"_s}};
    save(draft(u"a"_s, u"b"_s, u"new"_s));
    EXPECT_EQ(secrets->items, Items({{u"a"_s, u"old"_s}}));
    EXPECT_EQ(sent(), QStringList({u"b new"_s}));
    EXPECT_EQ(store->lastActionMessage(), QString());
}

TEST_F(TunnelPasswordTests, AServiceThatDoesNotTakeItIsNobodysNews)
{
    service->tunnelSecret.fail(VeranoxAPIFailure::refused(u"no"_s, 409));
    save(draft(std::nullopt, u"a"_s, u"new"_s));
    EXPECT_EQ(secrets->items, Items({{u"a"_s, u"new"_s}}));
    EXPECT_EQ(store->lastActionMessage(), QString());
}

TEST_F(TunnelPasswordTests, ATunnelThatNeedsNoneLosesIts)
{
    VeranoxTunnelDraft native = draft(u"a"_s, u"a"_s, u"typed"_s);
    native.useSSH = false;
    for (const VeranoxTunnelDraft &each :
        {draft(u"a"_s, u"a"_s, u"typed"_s, Auth::agent), draft(u"a"_s, u"b"_s, u"typed"_s, Auth::key), native}) {
        secrets->items = {{u"a"_s, u"old"_s}, {u"other"_s, u"x"_s}};
        save(each);
        EXPECT_EQ(secrets->items, Items({{u"other"_s, u"x"_s}}));
    }
    EXPECT_EQ(sent(), QStringList());
}

TEST_F(TunnelPasswordTests, DeletingATunnelDeletesItsPasswordButNotBefore)
{
    secrets->items = {{u"a"_s, u"old"_s}};
    service->tunnelDeletion.fail(unavailable());
    EXPECT_EQ(resultOf(world, store->deleteTunnel(u"a"_s)),
        u"The Veranox service is not running, so the tunnel was not deleted."_s);
    EXPECT_EQ(secrets->items, Items({{u"a"_s, u"old"_s}}));
    service->tunnelDeletion.answer({});
    EXPECT_EQ(resultOf(world, store->deleteTunnel(u"a"_s)), std::nullopt);
    EXPECT_EQ(secrets->items, Items());
}

TEST_F(TunnelPasswordTests, ARestartSendsThePasswordFirst)
{
    secrets->items = {{u"a"_s, u"kept"_s}};
    store->adoptTunnels({sshTunnel(u"a"_s)});
    service->tunnelSecret.fail(VeranoxAPIFailure::refused(u"no"_s, 409));
    service->tunnelRestart.fail(VeranoxAPIFailure::refused(u"refused"_s, 409));
    std::ignore = resultOf(world, store->restartTunnel(u"a"_s));
    EXPECT_EQ(sent(), QStringList({u"a kept"_s}));
    EXPECT_EQ(service->tunnelRestart.calls, 1) << "whether it was taken or not";
    EXPECT_EQ(store->lastActionMessage(), u"Tunnel a: refused");
    EXPECT_EQ(secrets->calls, QStringList({u"read a"_s})) << "it may ask the user";
}

TEST_F(TunnelPasswordTests, ARestartThatNeedsNoPasswordSendsNone)
{
    secrets->items = {{u"a"_s, u"kept"_s}, {u"b"_s, u"kept"_s}};
    const QList<VeranoxTunnel> tunnels{
        sshTunnel(u"a"_s, u"key"_s), {.name = u"b"_s, .mode = u"native"_s, .sshAuth = u"password"_s}};
    store->adoptTunnels(tunnels);
    service->tunnelRestart.answer(tunnels); // each restart brings the list anew
    for (const QString &name : {u"a"_s, u"b"_s, u"unknown"_s})
        std::ignore = resultOf(world, store->restartTunnel(name));
    EXPECT_EQ(service->tunnelRestart.arguments, QStringList({u"a"_s, u"b"_s, u"unknown"_s}));
    EXPECT_EQ(secrets->calls, QStringList());
    EXPECT_EQ(sent(), QStringList());
}

TEST_F(TunnelPasswordTests, EveryRefreshTellsTheServiceEachPasswordAgain)
{
    secrets->items = {{u"a"_s, u"1"_s}, {u"c"_s, u"3"_s}, {u"key"_s, u"x"_s}};
    service->tunnels.answer(
        {sshTunnel(u"c"_s), sshTunnel(u"none"_s), sshTunnel(u"key"_s, u"key"_s), sshTunnel(u"a"_s)});
    service->tunnelSecret.fail(VeranoxAPIFailure::refused(u"no"_s, 409)); // the walk goes on
    refresh();
    EXPECT_EQ(sent(), QStringList({u"c 3"_s, u"a 1"_s}));
    EXPECT_EQ(secrets->calls, QStringList({u"read quietly c"_s, u"read quietly none"_s, u"read quietly a"_s}));
    refresh();
    EXPECT_EQ(sent(), QStringList({u"c 3"_s, u"a 1"_s, u"c 3"_s, u"a 1"_s}));
    EXPECT_TRUE(store->serviceState().isOnline());
    EXPECT_EQ(store->lastActionMessage(), QString());
}

TEST_F(TunnelPasswordTests, AListThatCouldNotBeReadTellsNothing)
{
    secrets->items = {{u"a"_s, u"1"_s}};
    store->adoptTunnels({sshTunnel(u"a"_s)});
    service->tunnels.fail(VeranoxAPIFailure::refused(u"no"_s, 409));
    refresh();
    EXPECT_EQ(sent(), QStringList());
}

TEST_F(TunnelPasswordTests, ADroppedListStillTellsThePasswordsOfTheFreshOne)
{
    secrets->items = {{u"fresh"_s, u"1"_s}, {u"stale"_s, u"2"_s}};
    service->tunnels.answer({sshTunnel(u"stale"_s)});
    service->tunnels.hold();
    refresh();
    store->adoptTunnels({sshTunnel(u"fresh"_s)});
    service->tunnels.release();
    world.run();
    EXPECT_EQ(sent(), QStringList({u"fresh 1"_s}));
}

TEST_F(TunnelPasswordTests, TheWalkIsOverTheListAtItsBeginning)
{
    secrets->items = {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}};
    secrets->delay = 1s;
    service->tunnels.answer({sshTunnel(u"a"_s), sshTunnel(u"b"_s)});
    refresh();
    store->adoptTunnels({});
    world.run(2s);
    EXPECT_EQ(sent(), QStringList({u"a 1"_s, u"b 2"_s}));
    EXPECT_FALSE(store->isRefreshing());
}

TEST_F(TunnelPasswordTests, ACancelledWalkGoesNoFurther)
{
    secrets->items = {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}};
    secrets->delay = 1s;
    service->tunnels.answer({sshTunnel(u"a"_s), sshTunnel(u"b"_s)});
    jobs::JobScope scope(world.queue);
    const auto job = scope.start(store->refresh());
    world.run(500ms);
    job.cancel();
    world.run(5s);
    EXPECT_TRUE(job.finished());
    EXPECT_EQ(secrets->calls, QStringList({u"read quietly a"_s}));
}

TEST_F(TunnelPasswordTests, ADraftAsksTheKeyringOnlyWhereAPasswordMayBeKept)
{
    secrets->items = {{u"a"_s, u"1"_s}, {u"k"_s, u"1"_s}};
    EXPECT_TRUE(resultOf(world, store->tunnelDraft(sshTunnel(u"a"_s))).hasStoredPassword);
    EXPECT_FALSE(resultOf(world, store->tunnelDraft(sshTunnel(u"b"_s))).hasStoredPassword);
    EXPECT_FALSE(resultOf(world, store->tunnelDraft(sshTunnel(u"k"_s, u"key"_s))).hasStoredPassword);
    EXPECT_EQ(secrets->calls, QStringList({u"look for a"_s, u"look for b"_s}));
}

TEST_F(TunnelPasswordTests, WithoutAKeyringATypedPasswordIsSentAllTheSame)
{
    VeranoxNoTunnelSecrets none(u"No keyring."_s);
    EXPECT_EQ(none.problem(), u"No keyring.");
    EXPECT_FALSE(resultOf(world, none.setPassword(u"x"_s, u"a"_s)));
    EXPECT_TRUE(resultOf(world, none.setPassword(u""_s, u"a"_s)));
    EXPECT_FALSE(resultOf(world, none.hasPassword(u"a"_s)));
    finish(world, none.deletePassword(u"a"_s));
    EXPECT_EQ(resultOf(world, none.password(u"a"_s, VeranoxTunnelSecretStoring::Unlocking::ask)), std::nullopt);
}

TEST_F(TunnelPasswordTests, ARefreshWaitsForASlowKeyringASecondInAll)
{
    secrets->items = {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}};
    secrets->delay = 25s;
    service->tunnels.answer({sshTunnel(u"a"_s), sshTunnel(u"b"_s)});
    refresh();
    world.run(999ms);
    EXPECT_TRUE(store->isRefreshing());
    world.run(1ms);
    EXPECT_FALSE(store->isRefreshing());
    EXPECT_TRUE(store->serviceState().isOnline());
    refresh();
    EXPECT_FALSE(store->isRefreshing()) << "it waits for the same keyring again";
    EXPECT_EQ(secrets->calls, QStringList({u"read quietly a"_s})) << "it is asked again before it has answered";
    world.run(1min);
    EXPECT_EQ(sent(), QStringList({u"a 1"_s, u"b 2"_s})) << "a late answer is used all the same";
}

TEST_F(TunnelPasswordTests, ACancelledRefreshAsksTheKeyringForNothingMore)
{
    secrets->delay = 500ms;
    service->tunnels.answer({sshTunnel(u"a"_s), sshTunnel(u"b"_s)});
    store->startRefreshLoop();
    world.run(15s + 100ms);
    ASSERT_TRUE(store->isRefreshing());
    store->shutdown();
    world.run();
    EXPECT_FALSE(store->isRefreshing()) << "it waits for the keyring";
    world.run(1min);
    EXPECT_EQ(secrets->calls, QStringList({u"read quietly a"_s}));
}
