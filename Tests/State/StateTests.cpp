#include "State/VeranoxState.h"
#include "Tests/Support/ChangeCount.h"
#include <QCoreApplication>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Observer final : public VeranoxFailureObserving {
public:
    explicit Observer(QList<bool> *busy) : m_busy(busy) { }
    void observe(const VeranoxNotificationSnapshot &snapshot) override { m_busy->append(snapshot.isBusy); }

private:
    QList<bool> *m_busy;
};

} // namespace

TEST(VeranoxState, isFollowedByReadingIt)
{
    VeranoxState state;
    const ChangeCount words([&] { return state.serviceState().title() + state.lastActionMessage(); });
    state.setServiceState(ServiceState::starting());
    EXPECT_EQ(words.count(), 1);
    state.setServiceState(ServiceState::starting());
    EXPECT_EQ(words.count(), 1);
    state.setIsRefreshing(true); // not read
    EXPECT_EQ(words.count(), 1);
    state.announceAction(u"Restarting router..."_s);
    EXPECT_EQ(words.count(), 2);
}

TEST(VeranoxState, tellsOfChangesOnceATurn)
{
    VeranoxState state;
    QSignalSpy changes(&state, &VeranoxState::changed);
    state.setIsRefreshing(true);
    state.setServiceState(ServiceState::online());
    EXPECT_EQ(changes.count(), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes.count(), 1);
    state.setIsRefreshing(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes.count(), 1);
}

TEST(VeranoxState, tellsItsObserverAfterEachWriteThatFailuresShowIn)
{
    QList<bool> busy;
    VeranoxState state(std::make_unique<Observer>(&busy));
    state.setServiceState(ServiceState::online());
    state.setProfiles({});
    state.setTunnels({});
    state.setPublications({});
    EXPECT_EQ(busy, QList<bool>({false, false, false, false}));
    busy.clear();
    state.setIsSavingSettings(true);
    state.setIsSavingSettings(false);
    state.setIsRestartingRouter(true);
    state.setIsRestartingRouter(false);
    state.setIsQuitting();
    EXPECT_EQ(busy, QList<bool>({true, false, true, false, true}));
    busy.clear();
    state.setIsRefreshing(true);
    state.setRouterNeedsRestart(true);
    EXPECT_TRUE(busy.isEmpty());
}

TEST(VeranoxState, adoptsAListAsAnotherGeneration)
{
    VeranoxState state;
    state.setTunnels({});
    state.setPublications({});
    EXPECT_EQ(state.generations().tunnels, 0);
    EXPECT_EQ(state.generations().publications, 0);
    state.adoptTunnels({VeranoxTunnel{.name = u"db"_s}});
    EXPECT_EQ(state.tunnels().size(), 1);
    EXPECT_EQ(state.generations().tunnels, 1);
    EXPECT_EQ(state.generations().publications, 0);
    state.adoptPublications({});
    EXPECT_EQ(state.generations().publications, 1);
}

TEST(VeranoxState, theLastActionsMessageIsWhatItsOutcomeSays)
{
    VeranoxState state;
    state.conclude(VeranoxActionOutcome::failure(u"It failed."_s).about(u"Tunnel db"_s));
    EXPECT_EQ(state.lastActionMessage(), u"Tunnel db: It failed."_s);
    state.conclude(VeranoxActionOutcome::success());
    state.conclude(VeranoxActionOutcome::cancelled().about(u"Tunnel db"_s));
    EXPECT_EQ(state.lastActionMessage(), u"Tunnel db: It failed."_s);
    state.conclude(VeranoxActionOutcome::success(u"Done."_s));
    EXPECT_EQ(state.lastActionMessage(), u"Done."_s);
}
