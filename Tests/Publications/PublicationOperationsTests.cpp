// What a person does with publications, without the store.
#include "Publications/VeranoxPublicationOperations.h"
#include "Tests/Support/SubjectWorld.h"

using namespace Qt::StringLiterals;
using Result = VeranoxPublicationActionResult;

namespace {

const QString notRunning = u"The Veranox service is not running, so the publication was not "_s;

VeranoxPublicationDraft draftNamed(const QString &name)
{
    VeranoxPublicationDraft draft;
    draft.name = name;
    draft.profile = u"home"_s;
    draft.target = u"localhost:8080"_s;
    draft.port = u"443"_s;
    return draft;
}

} // namespace

class PublicationOperations : public SubjectWorld {
protected:
    PublicationOperations() { state.setProfiles({owner(u"home"_s, u"tsnet"_s), owner(u"old"_s, u"tailscaled"_s)}); }

    static VeranoxProfile owner(const QString &name, const QString &backend)
    {
        VeranoxProfile record = profile(name, true, u"Running"_s);
        record.backend = backend;
        return record;
    }

    static QList<VeranoxPublication> list(const QString &name, const QString &state = u"listening"_s)
    {
        return {publication(name, state)};
    }

    Result run(jobs::Async<Result> operation) { return resultOf(world, std::move(operation)); }
    Result save(const VeranoxPublicationDraft &draft) { return run(operations.save(draft)); }

    // Every operation that changes a publication, with what it says.
    struct Change {
        FakeOperation<QList<VeranoxPublication>> *operation;
        std::function<Result()> run;
        QString success;
        QString undone; // the end of its sentence without a service
        bool tellsInLastActionMessage;
    };
    QList<Change> changes()
    {
        return {
            {&service->publicationSave, [this] { return save(draftNamed(u"web"_s)); }, u"Publication created."_s,
                u"saved."_s, false},
            {&service->publicationDeletion, [this] { return run(operations.remove(u"web"_s)); },
                u"Publication deleted."_s, u"deleted."_s, false},
            {&service->publicationRestart, [this] { return run(operations.restart(u"web"_s)); },
                u"Publication web restarted."_s, u"restarted."_s, true},
            {&service->publicationStart, [this] { return run(operations.setEnabled(u"web"_s, true)); },
                u"Publication web started."_s, u"changed."_s, true},
            {&service->publicationStop, [this] { return run(operations.setEnabled(u"web"_s, false)); },
                u"Publication web stopped."_s, u"changed."_s, true},
        };
    }

    VeranoxPublicationOperations operations{state, *service};
};

TEST_F(PublicationOperations, EachSuccessAdoptsTheNewListAndSaysSo)
{
    for (const Change &change : changes()) {
        state.adoptPublications({});
        change.operation->answer(list(u"web"_s));
        const auto seen = observed->snapshots.size();
        EXPECT_EQ(change.run(), Result::success(change.success));
        EXPECT_EQ(state.publications(), list(u"web"_s));
        EXPECT_EQ(observed->snapshots.size(), seen + 1);
        EXPECT_EQ(observed->snapshots.last().publications, list(u"web"_s));
        EXPECT_EQ(state.lastActionMessage(), QString());
    }
}

TEST_F(PublicationOperations, EachFailureIsOneSentence)
{
    service->publications.fail(unavailable());
    for (const Change &change : changes()) {
        state.adoptPublications(list(u"old"_s));
        const auto expectFailure = [&](const QString &sentence) {
            const QString before = state.lastActionMessage();
            EXPECT_EQ(change.run(), Result::failure(sentence));
            EXPECT_EQ(state.lastActionMessage(),
                change.tellsInLastActionMessage ? u"Publication web: "_s + sentence : before);
            EXPECT_EQ(state.publications(), list(u"old"_s));
        };
        change.operation->fail(unavailable());
        expectFailure(notRunning + change.undone);
        change.operation->fail(VeranoxAPIFailure::refused(u"publication \"web\" does not exist"_s, 409));
        expectFailure(u"This publication no longer exists — it was removed while you were editing it. Close the editor "
                      "and create it again."_s);
        change.operation->fail(VeranoxAPIFailure::undecodable(u"It is no list."_s));
        expectFailure(u"Veranox couldn't read the response from its local service. Restart Veranox and try again."_s);
    }
}

TEST_F(PublicationOperations, OnlyAFailedSwitchReadsTheListAgain)
{
    const int before = service->publications.calls;
    QList<int> reads;
    for (const Change &change : changes()) {
        const int calls = service->publications.calls;
        change.operation->fail(unavailable());
        change.run();
        reads.append(service->publications.calls - calls);
    }
    EXPECT_EQ(reads, QList<int>({0, 0, 0, 1, 1}));
    EXPECT_EQ(service->publications.calls, before + 2);
}

TEST_F(PublicationOperations, AStartThatCannotBindShowsWhatIsTrue)
{
    service->publications.answer(list(u"web"_s, u"error"_s));
    service->publicationStart.fail(
        VeranoxAPIFailure::refused(u"publication \"web\" could not be started: bind failed\nmore"_s, 409));
    EXPECT_EQ(run(operations.setEnabled(u"web"_s, true)),
        Result::failure(u"The publication was switched on and saved, but it could not be started: bind failed"_s));
    EXPECT_EQ(state.publications(), list(u"web"_s, u"error"_s));
    EXPECT_EQ(state.lastActionMessage(),
        u"Publication web: The publication was switched on and saved, but it could not be started: bind failed");
}

TEST_F(PublicationOperations, SavesTheNormalNameAndTheRecord)
{
    service->publicationSave.answer(list(u"web-1"_s));
    VeranoxPublicationDraft draft = draftNamed(u" Web-1 "_s);
    draft.originalName = u"old"_s;
    EXPECT_EQ(save(draft), Result::success(u"Publication saved."_s));
    EXPECT_EQ(service->publicationSave.arguments,
        QStringList({QString::fromUtf8(
            encodeRecord(VeranoxPublicationSaveRequest{u"web-1"_s, u"old"_s, draft.makePublication().value()}))}));
}

TEST_F(PublicationOperations, AFunnelIsSavedButNotServed)
{
    service->publicationSave.answer(list(u"web"_s, u"blocked"_s));
    for (const auto &originalName : {std::optional<QString>(), std::optional(u"web"_s)}) {
        VeranoxPublicationDraft draft = draftNamed(u"web"_s);
        draft.originalName = originalName;
        draft.reach = VeranoxPublicationReach::funnel;
        EXPECT_EQ(save(draft),
            Result::success(
                u"Publication saved. It is not being served: this version does not publish to the public internet."_s));
    }
}

TEST_F(PublicationOperations, ChecksRunInOrderAndSendNothing)
{
    VeranoxPublication taken = publication(u"web"_s, u"listening"_s);
    taken.profile = u"old"_s;
    taken.port = 443;
    state.adoptPublications({taken});
    VeranoxPublicationDraft draft = draftNamed(u" WEB "_s);
    draft.profile = u"old"_s;
    draft.port = u"x"_s;
    EXPECT_EQ(save(draft), Result::failure(u"Tailnet port must be a number."_s));
    draft.port = u"443"_s;
    EXPECT_EQ(save(draft), Result::failure(u"A publication named \"web\" already exists."_s));
    draft.name = u"new"_s;
    EXPECT_EQ(save(draft),
        Result::failure(
            u"Profile old runs on the tailscaled backend. Publications need backend: tsnet — set it on that "
            "profile first. Switching backends means signing that profile in again, because the two "
            "backends do not share state."_s));
    taken.profile = u"home"_s;
    state.adoptPublications({taken});
    draft.profile = u"home"_s;
    EXPECT_EQ(save(draft), Result::failure(u"Publication \"web\" already uses port 443 on profile \"home\"."_s));
    EXPECT_EQ(service->publicationSave.calls, 0);
    EXPECT_EQ(state.lastActionMessage(), QString());
}

TEST_F(PublicationOperations, WhichProfilesCanPublish)
{
    VeranoxProfile work = owner(u"z"_s, u"tsnet"_s);
    work.displayName = u"Zed at Work"_s;
    state.setProfiles({owner(u"home"_s, u"tsnet"_s), owner(u"old"_s, u"tailscaled"_s), work,
        owner(u"odd"_s, u"Tsnet"_s), owner(u"attic"_s, u"tsnet"_s)});
    state.setPublications({publication(u"lost"_s, u"stopped"_s), [] {
                               VeranoxPublication record = publication(u"own"_s, u"stopped"_s);
                               record.profile = u"z"_s;
                               return record;
                           }()});
    QStringList names;
    for (const VeranoxProfile &each : operations.publishableProfiles())
        names.append(each.name);
    EXPECT_EQ(names, QStringList({u"z"_s, u"attic"_s, u"home"_s}));
    const auto groups = operations.byProfile();
    ASSERT_EQ(groups.size(), 1);
    EXPECT_EQ(groups.first().first.name, u"z");
    EXPECT_EQ(groups.first().second.first().name, u"own");
}

TEST_F(PublicationOperations, ACancelledOperationIsNobodysNews)
{
    service->publicationStart.fail(VeranoxAPIFailure::cancelled());
    const int reads = service->publications.calls;
    EXPECT_EQ(run(operations.setEnabled(u"web"_s, true)), Result::cancelled());
    EXPECT_EQ(service->publications.calls, reads);
    EXPECT_EQ(state.lastActionMessage(), QString());
}
