#include "Tests/Core/Entry/DelegateWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reply = VeranoxMenuAppDelegate::TerminateReply;

namespace {

class DelegateTermination : public DelegateWorld {
protected:
    void launchWhole()
    {
        launch();
        EXPECT_TRUE(store->serviceState().isOnline());
        steps.clear();
    }
};

} // namespace

TEST_F(DelegateTermination, stopsTheServiceInOrderBeforeItReplies)
{
    launchWhole();
    EXPECT_EQ(delegate->applicationShouldTerminate(), Reply::later);
    world.run(349ms);
    EXPECT_EQ(service->shutdownRequest.calls, 1);
    EXPECT_EQ(steps, QStringList()); // the service is given its time
    world.run(1ms);
    EXPECT_EQ(runtime->calls, QStringList{u"shutdown"_s});
    EXPECT_EQ(newSteps(), QStringList({u"ends in 250 ms"_s, u"reply"_s}));
    EXPECT_EQ(store->serviceState(), ServiceState::offline());
    EXPECT_EQ(delegate->applicationShouldTerminate(), Reply::now);
    world.run(1h);
    EXPECT_EQ(steps, QStringList());
    EXPECT_EQ(service->shutdownRequest.calls, 1);
}

TEST_F(DelegateTermination, aSecondRequestMeanwhileWaitsForTheSameEnd)
{
    launchWhole();
    EXPECT_EQ(delegate->applicationShouldTerminate(), Reply::later);
    world.run(100ms);
    EXPECT_EQ(delegate->applicationShouldTerminate(), Reply::later);
    EXPECT_EQ(steps, QStringList());
    world.run(1h);
    EXPECT_EQ(service->shutdownRequest.calls, 1);
    EXPECT_EQ(runtime->calls, QStringList{u"shutdown"_s});
    EXPECT_EQ(steps.count(u"reply"_s), 2); // each is answered
    EXPECT_EQ(delegate->applicationShouldTerminate(), Reply::now);
}

TEST_F(DelegateTermination, theBackstopIsSetNoSoonerThanTheServiceHasStopped)
{
    launchWhole();
    runtime->stopTime = 2s;
    EXPECT_EQ(delegate->applicationShouldTerminate(), Reply::later);
    world.run(2'349ms);
    EXPECT_EQ(steps, QStringList());
    world.run(1ms);
    EXPECT_EQ(steps, QStringList({u"ends in 250 ms"_s, u"reply"_s}));
}

TEST_F(DelegateTermination, takesEverythingDownAtOnce)
{
    launchWhole();
    menuAction(u"Quit Veranox…"_s)->trigger();
    EXPECT_TRUE(shows(u"Quit Veranox"_s));
    EXPECT_EQ(service->shutdownRequest.calls, 0); // that only asks
    delegate->applicationWillTerminate();
    EXPECT_FALSE(shows(u"Quit Veranox"_s));
    EXPECT_EQ(steps, QStringList({u"status item goes"_s, u"service"_s, u"activity ends"_s}));
    EXPECT_EQ(runtime->calls, QStringList{u"terminateImmediately"_s});
    world.run(); // the refresh that was waiting for its time learns that it is cancelled
    const int before = service->profiles.calls;
    world.run(1h);
    EXPECT_EQ(service->profiles.calls, before); // nothing is read any more
    delegate->applicationShouldHandleReopen();
    EXPECT_FALSE(shows(u"popoverWindow"_s));
}

TEST_F(DelegateTermination, endsAtOnceAndTouchesNothingWithinATestBundle)
{
    const EnvironmentVariable bundle("XCTestConfigurationFilePath", "/tmp/a");
    launch();
    newSteps();
    EXPECT_EQ(delegate->applicationShouldTerminate(), Reply::now);
    delegate->applicationWillTerminate();
    world.run(1h);
    EXPECT_EQ(steps, QStringList());
    EXPECT_EQ(runtime->calls, QStringList());
    EXPECT_EQ(service->shutdownRequest.calls, 0);
}

TEST_F(DelegateTermination, aLaunchThatStillWaitsForTheLogStartsNothingAfterAQuit)
{
    logFile->loading.hold();
    launch();
    EXPECT_EQ(delegate->applicationShouldTerminate(), Reply::later);
    world.run(1s);
    EXPECT_EQ(steps.last(), u"reply"_s);
    delegate.reset(); // while the launch still waits
    EXPECT_EQ(steps.last(), u"status item goes"_s);
}
