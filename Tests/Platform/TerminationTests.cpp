#include "Platform/Platform.h"
#include "Platform/UnixSignals.h"
#include "Tests/Support/Eventually.h"
#include <csignal>
#include <gtest/gtest.h>

namespace {

sighandler_t handlerOf(int signal)
{
    struct sigaction action{};
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

} // namespace

TEST(Termination, EverySignalThatEndsAProcessArrivesInTheEventLoop)
{
    const auto termination = platform::makeTermination();
    int requests = 0;
    QObject::connect(termination.get(), &Termination::terminationRequested, termination.get(), [&] { ++requests; });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const int before = requests;
        std::raise(signal);
        EXPECT_EQ(requests, before) << "the handler itself must not run our code";
        EXPECT_TRUE(eventually([&] { return requests == before + 1; })) << "signal " << signal;
    }
}

TEST(Termination, SignalsThatComeTogetherAreOneRequest)
{
    const auto termination = platform::makeTermination();
    int requests = 0;
    QObject::connect(termination.get(), &Termination::terminationRequested, termination.get(), [&] { ++requests; });
    for (int i = 0; i < 100'000; ++i) // more than the sockets hold
        std::raise(SIGTERM);
    ASSERT_TRUE(eventually([&] { return requests > 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(requests, 1);
}

TEST(Termination, ASignalDuringTheWayDownIsHarmless)
{
    const auto termination = platform::makeTermination();
    int requests = 0;
    QObject::connect(termination.get(), &Termination::terminationRequested, termination.get(), [&] {
        if (++requests == 1)
            std::raise(SIGTERM);
    });
    std::raise(SIGTERM);
    EXPECT_TRUE(eventually([&] { return requests == 2; }));
}

TEST(Termination, ErrnoSurvivesTheHandler)
{
    const UnixSignals signalsOfTheProcess;
    for (int i = 0; i < 100'000; ++i) { // until the sockets are full and the handler's write fails
        errno = ERANGE;
        std::raise(SIGTERM);
        ASSERT_EQ(errno, ERANGE);
    }
}

TEST(Termination, TheFormerHandlersComeBack)
{
    std::signal(SIGINT, SIG_DFL);
    {
        const UnixSignals signalsOfTheProcess;
        EXPECT_NE(handlerOf(SIGINT), SIG_DFL);
    }
    EXPECT_EQ(handlerOf(SIGINT), SIG_DFL);
}

TEST(Termination, AnIgnoredHangUpStaysIgnored)
{
    std::signal(SIGHUP, SIG_IGN);
    {
        const UnixSignals signalsOfTheProcess;
        EXPECT_EQ(handlerOf(SIGHUP), SIG_IGN);
    }
    EXPECT_EQ(handlerOf(SIGHUP), SIG_IGN);
    std::signal(SIGHUP, SIG_DFL);
}
