// What a person does with tunnels, without the store.
#include "Tests/Support/FakeTunnelSecrets.h"
#include "Tests/Support/SubjectWorld.h"
#include "Tests/Tunnels/TunnelDrafts.h"
#include "Tunnels/VeranoxTunnelOperations.h"
#include "Tunnels/VeranoxTunnelPasswords.h"

using namespace Qt::StringLiterals;
using tunnel_drafts::draftNamed;

namespace {

using Sentence = std::optional<QString>;

const QString unreadable =
    u"Veranox couldn't read the response from its local service. Restart Veranox and try again."_s;

jobs::Async<> ignoring(jobs::Async<VeranoxActionOutcome> operation)
{
    std::ignore = co_await std::move(operation);
}

} // namespace

class TunnelOperations : public SubjectWorld {
protected:
    static QList<VeranoxTunnel> list(const QString &name) { return {tunnel(name, u"listening"_s)}; }

    Sentence save(const VeranoxTunnelDraft &draft) { return resultOf(world, operations.save(draft)).problem(); }

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
                [this] { return resultOf(world, operations.remove(u"old"_s)).problem(); }}};
    }

    // Each operation that tells of a failure in lastActionMessage.
    struct Switch {
        FakeOperation<QList<VeranoxTunnel>> *operation;
        std::function<VeranoxActionOutcome()> run;
    };
    QList<Switch> switches()
    {
        return {{&service->tunnelStart, [this] { return run(operations.setEnabled(u"db"_s, true)); }},
            {&service->tunnelStop, [this] { return run(operations.setEnabled(u"db"_s, false)); }},
            {&service->tunnelRestart, [this] { return run(operations.restart(u"db"_s)); }}};
    }

    VeranoxActionOutcome run(jobs::Async<VeranoxActionOutcome> operation)
    {
        return resultOf(world, std::move(operation));
    }

private:
    std::unique_ptr<FakeTunnelSecrets> m_keyring = std::make_unique<FakeTunnelSecrets>();

protected:
    FakeTunnelSecrets &secrets = *m_keyring; // owned by the passwords
    VeranoxTunnelPasswords passwords{world.queue, state, *service, std::move(m_keyring)};
    VeranoxTunnelOperations operations{state, *service, passwords};
};

TEST_F(TunnelOperations, SavesTheNormalNameAndTheRecord)
{
    service->tunnelSave.answer(list(u"db-1"_s));
    VeranoxTunnelDraft draft = draftNamed(u"  DB-1 "_s);
    draft.originalName = u"old"_s;
    EXPECT_EQ(save(draft), std::nullopt);
    EXPECT_EQ(service->tunnelSave.arguments,
        QStringList({QString::fromUtf8(
            encodeRecord(VeranoxTunnelSaveRequest{u"db-1"_s, u"old"_s, draft.makeTunnel().value()}))}));
    EXPECT_EQ(state.tunnels(), list(u"db-1"_s));
    EXPECT_EQ(state.lastActionMessage(), QString());
}

TEST_F(TunnelOperations, SendsNothingThatCannotBeSaved)
{
    state.adoptTunnels(list(u"db"_s));
    EXPECT_EQ(save(draftNamed(u" "_s)), u"Tunnel name is required."_s);
    EXPECT_EQ(save(draftNamed(u"DB"_s)), u"A tunnel named \"db\" already exists."_s);
    VeranoxTunnelDraft both = draftNamed(u"DB"_s);
    both.target.clear();
    EXPECT_EQ(save(both), u"Target must be host:port (for example db.internal.example:5432)."_s)
        << "what is wrong with the draft itself comes before what it collides with";
    EXPECT_EQ(service->tunnelSave.calls, 0);
    EXPECT_EQ(secrets.calls, QStringList());
}

TEST_F(TunnelOperations, EachFailureOfAChangeIsASentenceAndKeepsTheList)
{
    state.adoptTunnels(list(u"old"_s));
    for (const Change &change : changes()) {
        change.operation->fail(unavailable());
        EXPECT_EQ(change.run(), u"The Veranox service is not running, so the tunnel was not %1."_s.arg(change.undone));
        change.operation->fail(VeranoxAPIFailure::refused(u"tunnel already exists"_s, 409));
        EXPECT_EQ(change.run(), u"A tunnel with that name already exists. Choose a different name."_s);
        change.operation->fail(VeranoxAPIFailure::undecodable(u"It is no list."_s));
        EXPECT_EQ(change.run(), unreadable);
        EXPECT_EQ(state.tunnels(), list(u"old"_s));
    }
    EXPECT_EQ(secrets.calls, QStringList()) << "no password is touched";
    EXPECT_EQ(state.lastActionMessage(), QString());
}

TEST_F(TunnelOperations, SwitchesAdoptTheNewList)
{
    for (const Switch &change : switches()) {
        state.adoptTunnels({});
        change.operation->answer(list(u"db"_s));
        const auto seen = observed->snapshots.size();
        EXPECT_EQ(change.run(), VeranoxActionOutcome::success());
        EXPECT_EQ(change.operation->arguments, QStringList({u"db"_s}));
        EXPECT_EQ(state.tunnels(), list(u"db"_s));
        EXPECT_EQ(observed->snapshots.size(), seen + 1);
        EXPECT_EQ(observed->snapshots.last().tunnels, list(u"db"_s));
    }
    EXPECT_EQ(state.lastActionMessage(), QString());
}

TEST_F(TunnelOperations, AFailedSwitchSpeaksInTheErrorsOwnWords)
{
    state.adoptTunnels(list(u"db"_s));
    for (const Switch &change : switches()) {
        change.operation->fail(VeranoxAPIFailure::refused(u"tunnel \"db\" is not configured"_s, 409));
        change.run();
        EXPECT_EQ(state.lastActionMessage(), u"Tunnel db: tunnel \"db\" is not configured");
        change.operation->fail(unavailable());
        change.run();
        EXPECT_EQ(state.lastActionMessage(), u"Tunnel db: "_s + unavailable().localizedDescription());
        EXPECT_EQ(state.tunnels(), list(u"db"_s));
    }
    EXPECT_EQ(service->tunnels.calls, 0) << "the next refresh brings the state";
}

TEST_F(TunnelOperations, ACancelledOperationIsNobodysNews)
{
    service->tunnelStart.fail(VeranoxAPIFailure::cancelled());
    run(operations.setEnabled(u"db"_s, true));
    EXPECT_EQ(state.lastActionMessage(), QString());
    service->tunnelDeletion.fail(VeranoxAPIFailure::cancelled());
    EXPECT_EQ(resultOf(world, operations.remove(u"db"_s)).problem(), Sentence(QString()));
    service->tunnelSave.fail(VeranoxAPIFailure::cancelled());
    EXPECT_EQ(save(draftNamed(u"db"_s)), Sentence(QString()));
    EXPECT_EQ(secrets.calls, QStringList());
}

TEST_F(TunnelOperations, AnOperationWhoseViewIsGoneDoesNothingMore)
{
    state.adoptTunnels(list(u"old"_s));
    service->tunnelSave.hold();
    {
        jobs::JobScope view(world.queue);
        view.start(ignoring(operations.save(draftNamed(u"db"_s))));
        world.run();
        ASSERT_EQ(service->tunnelSave.calls, 1);
    }
    service->tunnelSave.answer(list(u"db"_s));
    service->tunnelSave.release();
    world.run();
    EXPECT_EQ(state.tunnels(), list(u"old"_s));
    EXPECT_EQ(secrets.calls, QStringList());
}
