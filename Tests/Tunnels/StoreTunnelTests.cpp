// What the store does with tunnels and the service.
#include "Tests/Support/JobResult.h"
#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;

namespace {

using Sentence = std::optional<QString>;

const QString unreadable =
    u"Veranox couldn't read the response from its local service. Restart Veranox and try again."_s;

jobs::Async<> ignoring(jobs::Async<Sentence> operation)
{
    std::ignore = co_await std::move(operation);
}

VeranoxTunnel passwordTunnel(const QString &name)
{
    return {.name = name, .mode = u"ssh"_s, .sshAuth = u"password"_s};
}

VeranoxTunnelDraft draftNamed(const QString &name)
{
    VeranoxTunnelDraft draft;
    draft.name = name;
    draft.profile = u"home"_s;
    draft.target = u"db:5432"_s;
    return draft;
}

} // namespace

class StoreTunnelTests : public StoreWorld {
protected:
    static QList<VeranoxTunnel> list(const QString &name) { return {tunnel(name, u"listening"_s)}; }

    Sentence save(const VeranoxTunnelDraft &draft) { return resultOf(world, store->saveTunnelDraft(draft)); }

    // Each operation that answers with a sentence, by what its sentence says was not done.
    struct Change {
        QString undone;
        FakeOperation<QList<VeranoxTunnel>> *operation;
        std::function<Sentence()> run;
    };
    QList<Change> changes()
    {
        return {{u"saved"_s, &service->tunnelSave, [this] { return save(draftNamed(u"new"_s)); }},
            {u"deleted"_s, &service->tunnelDeletion,
                [this] { return resultOf(world, store->deleteTunnel(u"old"_s)); }}};
    }

    // Each operation that tells of a failure in lastActionMessage.
    struct Switch {
        FakeOperation<QList<VeranoxTunnel>> *operation;
        std::function<VeranoxActionOutcome()> run;
    };
    QList<Switch> switches()
    {
        return {{&service->tunnelStart, [this] { return run(store->setTunnelEnabled(u"db"_s, true)); }},
            {&service->tunnelStop, [this] { return run(store->setTunnelEnabled(u"db"_s, false)); }},
            {&service->tunnelRestart, [this] { return run(store->restartTunnel(u"db"_s)); }}};
    }

    VeranoxActionOutcome run(jobs::Async<VeranoxActionOutcome> operation)
    {
        return resultOf(world, std::move(operation));
    }
};

TEST_F(StoreTunnelTests, SavesTheNormalNameAndTheRecord)
{
    service->tunnelSave.answer(list(u"db-1"_s));
    VeranoxTunnelDraft draft = draftNamed(u"  DB-1 "_s);
    draft.originalName = u"old"_s;
    EXPECT_EQ(save(draft), std::nullopt);
    EXPECT_EQ(service->tunnelSave.arguments,
        QStringList({QString::fromUtf8(
            encodeRecord(VeranoxTunnelSaveRequest{u"db-1"_s, u"old"_s, draft.makeTunnel().value()}))}));
    EXPECT_EQ(store->tunnels(), list(u"db-1"_s));
    EXPECT_EQ(store->lastActionMessage(), QString());
}

TEST_F(StoreTunnelTests, SendsNothingThatCannotBeSaved)
{
    store->adoptTunnels(list(u"db"_s));
    EXPECT_EQ(save(draftNamed(u" "_s)), u"Tunnel name is required."_s);
    EXPECT_EQ(save(draftNamed(u"DB"_s)), u"A tunnel named \"db\" already exists."_s);
    VeranoxTunnelDraft both = draftNamed(u"DB"_s);
    both.target.clear();
    EXPECT_EQ(save(both), u"Target must be host:port (for example db.internal.example:5432)."_s)
        << "what is wrong with the draft itself comes before what it collides with";
    EXPECT_EQ(service->tunnelSave.calls, 0);
    EXPECT_EQ(secrets->calls, QStringList());
}

TEST_F(StoreTunnelTests, EachFailureOfAChangeIsASentenceAndKeepsTheList)
{
    store->adoptTunnels(list(u"old"_s));
    for (const Change &change : changes()) {
        change.operation->fail(unavailable());
        EXPECT_EQ(change.run(), u"The Veranox service is not running, so the tunnel was not %1."_s.arg(change.undone));
        change.operation->fail(VeranoxAPIFailure::refused(u"tunnel already exists"_s, 409));
        EXPECT_EQ(change.run(), u"A tunnel with that name already exists. Choose a different name."_s);
        change.operation->fail(VeranoxAPIFailure::undecodable(u"It is no list."_s));
        EXPECT_EQ(change.run(), unreadable);
        EXPECT_EQ(store->tunnels(), list(u"old"_s));
    }
    EXPECT_EQ(secrets->calls, QStringList()) << "no password is touched";
    EXPECT_EQ(store->lastActionMessage(), QString());
}

TEST_F(StoreTunnelTests, SwitchesAdoptTheNewList)
{
    for (const Switch &change : switches()) {
        store->adoptTunnels({});
        change.operation->answer(list(u"db"_s));
        const auto seen = observed->snapshots.size();
        EXPECT_EQ(change.run(), VeranoxActionOutcome::success());
        EXPECT_EQ(change.operation->arguments, QStringList({u"db"_s}));
        EXPECT_EQ(store->tunnels(), list(u"db"_s));
        EXPECT_EQ(observed->snapshots.size(), seen + 1);
        EXPECT_EQ(observed->snapshots.last().tunnels, list(u"db"_s));
    }
    EXPECT_EQ(store->lastActionMessage(), QString());
}

TEST_F(StoreTunnelTests, AFailedSwitchSpeaksInTheErrorsOwnWords)
{
    store->adoptTunnels(list(u"db"_s));
    for (const Switch &change : switches()) {
        change.operation->fail(VeranoxAPIFailure::refused(u"tunnel \"db\" is not configured"_s, 409));
        change.run();
        EXPECT_EQ(store->lastActionMessage(), u"Tunnel db: tunnel \"db\" is not configured");
        change.operation->fail(unavailable());
        change.run();
        EXPECT_EQ(store->lastActionMessage(), u"Tunnel db: "_s + unavailable().localizedDescription());
        EXPECT_EQ(store->tunnels(), list(u"db"_s));
    }
    EXPECT_EQ(service->tunnels.calls, 0) << "the next refresh brings the state";
}

TEST_F(StoreTunnelTests, ACancelledOperationIsNobodysNews)
{
    service->tunnelStart.fail(VeranoxAPIFailure::cancelled());
    run(store->setTunnelEnabled(u"db"_s, true));
    EXPECT_EQ(store->lastActionMessage(), QString());
    service->tunnelDeletion.fail(VeranoxAPIFailure::cancelled());
    EXPECT_EQ(resultOf(world, store->deleteTunnel(u"db"_s)), Sentence(QString()));
    service->tunnelSave.fail(VeranoxAPIFailure::cancelled());
    EXPECT_EQ(save(draftNamed(u"db"_s)), Sentence(QString()));
    EXPECT_EQ(secrets->calls, QStringList());
}

TEST_F(StoreTunnelTests, GroupsTunnelsByProfileWithWorkFirst)
{
    const auto titled = [](const QString &name, const QString &title) {
        VeranoxProfile record = profile(name, true, u"Running"_s);
        record.displayName = title;
        return record;
    };
    const auto of = [](const QString &owner, const QString &name) {
        VeranoxTunnel record = tunnel(name, u"listening"_s);
        record.profile = owner;
        return record;
    };
    service->profiles.answer({titled(u"a"_s, u"alpha"_s), titled(u"b"_s, u"Beta"_s), titled(u"z"_s, u"Zum WORK"_s),
        titled(u"homework"_s, u"Ypsilon"_s), titled(u"empty"_s, u"Empty"_s), titled(u"twin2"_s, u"Twin"_s),
        titled(u"twin1"_s, u"TWIN"_s)});
    service->tunnels.answer({of(u"b"_s, u"3"_s), of(u"a"_s, u"1"_s), of(u"z"_s, u"2"_s), of(u"gone"_s, u"x"_s),
        of(u"twin1"_s, u"6"_s), of(u"twin2"_s, u"5"_s), of(u"homework"_s, u"4"_s), of(u"a"_s, u"0"_s)});
    refresh();
    QStringList groups;
    for (const auto &[owner, tunnels] : store->tunnelsByProfile())
        for (const VeranoxTunnel &each : tunnels)
            groups.append(owner.name + u' ' + each.name);
    EXPECT_EQ(
        groups, QStringList({u"homework 4"_s, u"z 2"_s, u"a 1"_s, u"a 0"_s, u"b 3"_s, u"twin2 5"_s, u"twin1 6"_s}))
        << "equal titles stay as they came";
}

TEST_F(StoreTunnelTests, ARefreshThatBeganBeforeASaveDoesNotUndoIt)
{
    service->tunnels.answer(list(u"old"_s));
    service->tunnels.hold();
    refresh();
    service->tunnelSave.answer(list(u"new"_s));
    EXPECT_EQ(save(draftNamed(u"new"_s)), std::nullopt);
    service->tunnels.release();
    world.run();
    EXPECT_EQ(store->tunnels(), list(u"new"_s));
    service->tunnels.answer(list(u"newest"_s));
    refresh();
    EXPECT_EQ(store->tunnels(), list(u"newest"_s)) << "one that began after it applies";
}

TEST_F(StoreTunnelTests, AnOperationWhoseViewIsGoneDoesNothingMore)
{
    store->adoptTunnels(list(u"old"_s));
    service->tunnelSave.hold();
    {
        jobs::JobScope view(world.queue);
        view.start(ignoring(store->saveTunnelDraft(draftNamed(u"db"_s))));
        world.run();
        ASSERT_EQ(service->tunnelSave.calls, 1);
    }
    service->tunnelSave.answer(list(u"db"_s));
    service->tunnelSave.release();
    world.run();
    EXPECT_EQ(store->tunnels(), list(u"old"_s));
    EXPECT_EQ(secrets->calls, QStringList());
}

TEST_F(StoreTunnelTests, TheStoreMayDieWhileItsOperationsWait)
{
    service->tunnels.answer({passwordTunnel(u"db"_s)});
    secrets->delay = std::chrono::seconds(10);
    refresh();
    ASSERT_TRUE(store->isRefreshing()); // waits for the keyring
    const int rings = world.clock.rings;
    const ChangeCount refreshing([this] { return store && store->isRefreshing(); });
    store.reset();
    EXPECT_EQ(refreshing.count(), 1); // the flag came down while it could still tell
    world.run(std::chrono::minutes(1));
    EXPECT_EQ(world.clock.rings, rings) << "something still waited for its time";
}
