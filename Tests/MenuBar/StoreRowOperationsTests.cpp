#include "MenuBar/VeranoxStoreRowOperations.h"
#include "Tests/Support/JobResult.h"
#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;

namespace {

class StoreRowOperations : public StoreWorld {
protected:
    static VeranoxAPIFailure refusal() { return VeranoxAPIFailure::refused(u"no"_s, 409); }
    QString resultOf(jobs::Async<QString> operation) { return ::resultOf(world, std::move(operation)); }
};

} // namespace

TEST_F(StoreRowOperations, anOldFailureIsNotTheOutcomeOfANewAction)
{
    const VeranoxRowOperations tunnels = tunnelOperations(*store);
    service->tunnelRestart.fail(refusal());
    EXPECT_EQ(resultOf(tunnels.restart(u"db"_s)), u"Tunnel db: no"_s);
    service->tunnelRestart.answer({tunnel(u"db"_s, u"error"_s, u"host unreachable"_s)});
    EXPECT_EQ(resultOf(tunnels.restart(u"db"_s)), QString());
    service->tunnelStop.answer({tunnel(u"db"_s, u"listening"_s)}); // which it is not yet
    EXPECT_EQ(resultOf(tunnels.setEnabled(u"db"_s, false)), QString());
    EXPECT_EQ(store->lastActionMessage(), u"Tunnel db: no"_s);
}

TEST_F(StoreRowOperations, theSameFailureTwiceIsToldTwice)
{
    store->adoptTunnels({tunnel(u"db"_s, u"listening"_s)});
    const VeranoxRowOperations tunnels = tunnelOperations(*store);
    service->tunnelStart.fail(refusal());
    EXPECT_EQ(resultOf(tunnels.setEnabled(u"db"_s, true)), u"Tunnel db: no"_s);
    EXPECT_EQ(resultOf(tunnels.setEnabled(u"db"_s, true)), u"Tunnel db: no"_s);
}

TEST_F(StoreRowOperations, aPublicationSaysItsSentence)
{
    const VeranoxRowOperations publications = publicationOperations(*store);
    service->publicationRestart.fail(unavailable());
    EXPECT_EQ(resultOf(publications.restart(u"web"_s)),
        u"The Veranox service is not running, so the publication was not restarted."_s);
    service->publicationRestart.answer({});
    EXPECT_EQ(resultOf(publications.restart(u"web"_s)), QString());
}

TEST_F(StoreRowOperations, aCancelledActionSaysNothing)
{
    service->tunnelStart.fail(VeranoxAPIFailure::cancelled());
    service->publicationStop.fail(VeranoxAPIFailure::cancelled());
    EXPECT_EQ(resultOf(tunnelOperations(*store).setEnabled(u"db"_s, true)), QString());
    EXPECT_EQ(resultOf(publicationOperations(*store).setEnabled(u"web"_s, false)), QString());
}
