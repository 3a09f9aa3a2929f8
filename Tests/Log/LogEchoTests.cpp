#include "Log/VeranoxLogEcho.h"
#include "Tests/Log/StoreLogWorld.h"
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

class LogEcho : public StoreLogWorld {
protected:
    LogEcho() { start(); }
    void start() { echo.emplace(store->activityLog(), terminal.get()); }

    // All that was printed so far.
    QStringList printed() const
    {
        QByteArray bytes(1 << 20, '\0');
        const ssize_t size = ::pread(::fileno(terminal.get()), bytes.data(), static_cast<std::size_t>(bytes.size()), 0);
        EXPECT_GE(size, 0);
        QStringList lines = QString::fromUtf8(bytes.first(std::max<ssize_t>(size, 0))).split(u'\n');
        EXPECT_EQ(lines.takeLast(), u""_s);
        return lines;
    }

    std::unique_ptr<std::FILE, CloseFile> terminal{std::tmpfile()};
    std::optional<VeranoxLogEcho> echo;
};

TEST_F(LogEcho, RepeatsEachLineOfTheLogOnceAfterItsTurn)
{
    store->appendLog(u"[APP] größer 🙂\nb"_s);
    EXPECT_EQ(printed(), QStringList());
    world.run();
    EXPECT_EQ(printed(), (QStringList{u"[APP] größer 🙂"_s, u"b"_s}));
    store->appendLog(u"c"_s);
    world.run();
    EXPECT_EQ(printed(), (QStringList{u"[APP] größer 🙂"_s, u"b"_s, u"c"_s}));
}

TEST_F(LogEcho, LosesNoLineOfATurnThatLogsMoreThanIsKept)
{
    QStringList expected;
    for (int number = 0; number < 2'000; ++number) {
        store->appendLog(QString::number(number));
        expected.append(QString::number(number));
    }
    world.run();
    EXPECT_EQ(printed(), expected);
}

TEST_F(LogEcho, LeavesOutTheHistory)
{
    file->loading.answer({stored(u"yesterday"_s)});
    prepare();
    ASSERT_EQ(log().size(), 2);
    EXPECT_EQ(printed(), QStringList{log().last()});
}

TEST_F(LogEcho, PrintsWhatWasLoggedLastWhenItGoes)
{
    store->appendLog(u"last words"_s);
    echo.reset();
    EXPECT_EQ(printed(), QStringList{u"last words"_s});
}

} // namespace
