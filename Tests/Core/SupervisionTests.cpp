// The supervision without the store: what a restart does to changes that wait for one.
#include "Core/VeranoxRecoveryBudget.h"
#include "Core/VeranoxRefresh.h"
#include "Core/VeranoxRefreshLoop.h"
#include "Core/VeranoxServiceStart.h"
#include "Core/VeranoxStartupSettlement.h"
#include "Core/VeranoxSupervision.h"
#include "Log/VeranoxActivityLog.h"
#include "Profiles/VeranoxProfileEditing.h"
#include "Tests/Support/FakeAPIClient.h"
#include "Tests/Support/FakeRuntimeClient.h"
#include "Tests/Support/JobResult.h"
#include "Tests/Support/QtPrinters.h"
#include "Tunnels/VeranoxTunnelPasswords.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class Supervision : public ::testing::Test {
protected:
    Supervision()
    {
        client.config.answer({.router = VeranoxRouterConfig::defaults()});
        client.editableConfig.answer(VeranoxEditableConfig::emptyForFirstProfile());
        state.setRouterNeedsRestart(true);
    }

    VeranoxActionOutcome restart() { return resultOf(world, supervision.restart()); }

    jobs::World world;
    VeranoxState state;
    VeranoxProfileEditing editing{state};
    FakeAPIClient client{world.queue};
    FakeRuntimeClient runtime;
    VeranoxActivityLog log{world.queue, state, {}, VeranoxDiagnosticSession::make(), VeranoxSessionIdentity::of({})};
    VeranoxTunnelPasswords passwords{world.queue, state, client, {}};
    VeranoxRecoveryBudget recovery{world.clock};
    VeranoxStartupSettlement settlement{world.queue, state, log, 65s};
    VeranoxRefresh refresh{{state, editing, client, passwords, log, recovery, settlement}};
    VeranoxRefreshLoop loop{world.queue, state, refresh};
    VeranoxServiceStart start{world.queue, {state, log, client, runtime, recovery, std::nullopt, 30s}};
    VeranoxSupervision supervision{world.queue, {state, editing, log, client, runtime, recovery, start, refresh, loop}};
};

} // namespace

TEST_F(Supervision, aRestartAppliesTheChangesThatWaitForIt)
{
    EXPECT_EQ(restart(), VeranoxActionOutcome::success(u"Router restarted. Changes are active."_s));
    EXPECT_FALSE(state.routerNeedsRestart());
}

TEST_F(Supervision, changesStillWaitAfterARestartThatFailed)
{
    client.health.answer(false);
    client.profiles.fail(VeranoxAPIFailure::unavailable());
    EXPECT_EQ(
        restart(), VeranoxActionOutcome::failure(u"Router restart failed: Start Veranox to enable local routing"_s));
    EXPECT_TRUE(state.routerNeedsRestart());
}

TEST_F(Supervision, aSecondRestartMeanwhileHasNoOutcome)
{
    client.shutdownRequest.hold();
    jobs::JobScope scope(world.queue);
    const auto first = scope.start(supervision.restart());
    world.run();
    EXPECT_EQ(restart(), VeranoxActionOutcome::cancelled());
    EXPECT_FALSE(first.finished());
}
