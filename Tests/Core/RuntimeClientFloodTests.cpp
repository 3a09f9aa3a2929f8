// A service that says more than anybody wants to hear.
#include "Tests/Core/FloodWatch.h"
#include "Tests/Core/RuntimeClientWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// The sanitizer keeps freed memory for a while; this keeps that from counting as growth.
extern "C" const char *__asan_default_options(); // NOLINT(bugprone-reserved-identifier): the sanitizer's own name
extern "C" const char *__asan_default_options()
{
    return "quarantine_size_mb=8";
}

namespace {

class RuntimeClientFlood : public RuntimeClientWorld {
protected:
    RuntimeClientFlood()
    {
        client->onOutput = [this](const QString &line) {
            ++told;
            characters += line.size();
            longest = std::max(longest, line.size());
        };
    }

    // Reads it all.
    void hear(const QString &flood)
    {
        const FloodWatch watch;
        client->startGUI(doing({flood, u"exit:0"_s}));
        EXPECT_TRUE(waitForExit(50s));
        EXPECT_LT(watch.growth(), 32 * 1024 * 1024);
        EXPECT_LT(watch.longestWork(), 100); // ms; it is about 10 without a sanitizer
    }

    qint64 told = 0;
    qint64 characters = 0;
    qsizetype longest = 0;
};

QString pattern(const QByteArray &bytes, int megabytes = 100)
{
    return u"flood:%1:%2"_s.arg(megabytes).arg(QString::fromLatin1(bytes.toHex()));
}

} // namespace

TEST_F(RuntimeClientFlood, linesOfAnOrdinaryLength)
{
    hear(pattern(QByteArray(79, 'x') + '\n'));
    EXPECT_GE(told, 100 * 1024 * 1024 / 80);
}

TEST_F(RuntimeClientFlood, noLineEndAtAll)
{
    hear(pattern("x"));
    EXPECT_GE(characters, 100 * 1024 * 1024);
    EXPECT_LE(longest, 64 * 1024 + 6); // one read, and "[GUI] "
}

TEST_F(RuntimeClientFlood, theShortestLines)
{
    hear(pattern("x\n", 4));
    EXPECT_EQ(told, 4 * 1024 * 1024 / 2 + 2); // and the start and the end
}

TEST_F(RuntimeClientFlood, binaryRubbish)
{
    hear(pattern("\xff\n"));
    EXPECT_EQ(told, 2);
}

TEST_F(RuntimeClientFlood, charactersOfManyBytesLoseNothingToTheLimitOfARead)
{
    hear(pattern("€", 4));
    EXPECT_GT(characters, 4 * 1024 * 1024 / 3 / 2); // a writer that is ahead of the reader may still cut some in two
}

TEST_F(RuntimeClientFlood, aStopInTheMiddleTakesEffect)
{
    client->startGUI(doing({pattern("x\n", 2000)}));
    ASSERT_TRUE(world.runUntil([this] { return told > 1000; }));
    EXPECT_LT(stop(), 2.1);
    EXPECT_FALSE(client->guiProcess());
}
