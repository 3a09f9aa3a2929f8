#include "Base/Process/ToolRunner.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RealWorld.h"
#include <gtest/gtest.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class Tool : public ::testing::Test {
protected:
    Tool() : runner(world.queue), scope(world.queue) { }

    QString run(const QStringList &instructions, const QString &executable = QStringLiteral(SERVICE_DOUBLE))
    {
        QString printed;
        const auto job = scope.start(keep(&printed, runner.run(executable, instructions)));
        EXPECT_TRUE(world.runUntil([&] { return job.finished(); }));
        return printed;
    }

    bool noChildIsLeft()
    {
        return world.runUntil([] { return ::waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) < 0; }, 5s);
    }

    static jobs::Async<> keep(QString *to, jobs::Async<QString> from) { *to = co_await std::move(from); }

    RealWorld world;
    ToolRunner runner;
    jobs::JobScope scope;
};

} // namespace

TEST_F(Tool, givesTheWholeOutputAndNotTheErrors)
{
    EXPECT_EQ(run({u"say:one\n"_s, u"complain:never\n"_s, u"nap:100"_s, u"say:two\n"_s}), u"one\ntwo\n"_s);
    EXPECT_EQ(run({u"flood:1:78"_s}).size(), 1024 * 1024);
}

TEST_F(Tool, anErrorStreamThatNobodyReadsDoesNotHoldItUp)
{
    EXPECT_EQ(run({u"complain:"_s + QString(100'000, u'x'), u"say:done"_s}), u"done"_s);
}

TEST_F(Tool, givesNothingWhenItCannotBeStarted)
{
    EXPECT_EQ(run({}, u"/nowhere/tool"_s), QString());
}

TEST_F(Tool, givesNothingForWhatIsNoText)
{
    EXPECT_EQ(run({u"bytes:6f6bff"_s}), QString());
}

TEST_F(Tool, oneThatNeverEndsIsKilledAtTheLimit)
{
    const double begin = world.seconds();
    EXPECT_EQ(run({u"stubborn"_s, u"say:something"_s, u"stay"_s}), QString());
    EXPECT_GE(world.seconds() - begin, 5.0);
    EXPECT_LT(world.seconds() - begin, 6.0);
    EXPECT_TRUE(noChildIsLeft());
}

TEST_F(Tool, oneThatSaysTooMuchIsKilled)
{
    EXPECT_EQ(run({u"flood:1000:78"_s}), QString());
    EXPECT_TRUE(noChildIsLeft());
}
