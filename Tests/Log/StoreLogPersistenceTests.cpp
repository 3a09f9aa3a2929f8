// From entries to the file and back.
#include "Tests/Log/StoreLogWorld.h"
#include <QRegularExpression>
#include <sys/utsname.h>

using namespace Qt::StringLiterals;

namespace {

using StoreLogPersistence = StoreLogWorld;

VeranoxRuntimeLogFileError diskError(const QString &text)
{
    return VeranoxRuntimeLogFileError(text);
}

TEST_F(StoreLogPersistence, WritesEveryEntryInOrderOneAtATime)
{
    file->appending.hold();
    for (int number = 0; number < 10; ++number)
        store->appendLog(u"%1a\n%1b"_s.arg(number));
    world.run();
    EXPECT_EQ(file->appending.calls, 1);
    file->appending.release();
    world.run();
    EXPECT_EQ(file->written, store->runtimeLog());
    store->appendLog(u"later"_s);
    world.run();
    EXPECT_EQ(file->written.last().message, u"later"_s);
}

TEST_F(StoreLogPersistence, JoinsWhatWaitsIntoOneWrite)
{
    file->appending.hold();
    store->appendLog(u"first"_s);
    world.run();
    for (int number = 0; number < 499; ++number)
        store->appendLog(u"waits"_s);
    file->appending.release();
    world.run();
    EXPECT_EQ(file->appending.calls, 2);
    EXPECT_EQ(file->written, store->runtimeLog());
}

// The first line is on its way to the disk; those behind it take the place of one another.
TEST_F(StoreLogPersistence, HoldsNoMoreForADiskThatHangsThanItsFilesWould)
{
    file->appending.hold();
    store->appendLog(u"on its way"_s);
    world.run();
    ASSERT_EQ(file->appending.calls, 1);
    const QString line(16'000, u'x');
    for (int number = 0; number < 2'000; ++number) {
        store->appendLog(line);
        world.run();
    }
    EXPECT_EQ(file->appending.calls, 1);
    file->appending.release();
    world.run();
    ASSERT_GT(file->written.size(), 1);
    EXPECT_EQ(file->written.takeFirst().message, u"on its way"_s);
    EXPECT_GE(file->written.size(), 8 * 1024 * 1024 / 17'000);
    EXPECT_LE(file->written.size(), 8 * 1024 * 1024 / 16'000 + 2);
    for (qsizetype index = 0; index < file->written.size(); ++index) // the newest, without a gap
        ASSERT_EQ(file->written[index].sequence, static_cast<std::uint64_t>(2'001 - file->written.size() + index + 1));
    EXPECT_EQ(store->runtimeLogPersistenceError(), std::nullopt);
}

TEST_F(StoreLogPersistence, WritesMoreThanItKeepsInMemory)
{
    for (int number = 0; number < 10'000; ++number)
        store->appendLog(QString::number(number));
    world.run();
    ASSERT_EQ(file->written.size(), 10'000);
    for (int number = 0; number < 10'000; ++number)
        ASSERT_EQ(file->written[number].sequence, static_cast<std::uint64_t>(number) + 1);
}

TEST_F(StoreLogPersistence, TellsOfTheLastWriteOnly)
{
    file->appending.fail(diskError(u"The disk is full"_s));
    store->appendLog(u"lost"_s);
    world.run();
    EXPECT_EQ(store->runtimeLogPersistenceError(), u"Activity history could not be saved: The disk is full"_s);
    EXPECT_EQ(log(), QStringList{u"lost"_s});
    file->appending.answer({});
    store->appendLog(u"kept"_s);
    world.run();
    EXPECT_EQ(store->runtimeLogPersistenceError(), std::nullopt);
    EXPECT_EQ(file->written.size(), 1);
}

TEST_F(StoreLogPersistence, EndsWithTheStoreWhileAWriteIsHeld)
{
    file->appending.hold();
    store->appendLog(u"a\nb"_s);
    world.run();
    store.reset();
    world.run();
    EXPECT_TRUE(world.queue.idle());
}

TEST_F(StoreLogPersistence, BringsBackTheNewestFiveHundred)
{
    auto old = stored(u"?token=abc"_s);
    old.redactionVersion = 1;
    old.sequence = 77;
    auto newer = stored(u"b"_s);
    newer.eventRedactionVersion = 5;
    newer.redactionVersion = 4;
    file->loading.answer({old, newer, stored(u"c"_s)});
    store->appendLog(u"before the load"_s);
    prepare();
    EXPECT_EQ(file->limits, QList{500});
    ASSERT_EQ(store->runtimeLog().size(), 4);
    old.message = u"?token=[REDACTED]"_s;
    old.redactionVersion.reset();
    old.eventRedactionVersion = 1;
    EXPECT_EQ(store->runtimeLog()[0], old);
    EXPECT_EQ(store->runtimeLog()[1].eventRedactionVersion, 5);
    EXPECT_EQ(store->runtimeLog()[1].redactionVersion, std::nullopt);
    EXPECT_EQ(store->runtimeLog()[2].eventRedactionVersion, std::nullopt);
    EXPECT_EQ(store->runtimeLog()[3].sequence, 1U);
}

TEST_F(StoreLogPersistence, DropsTheOldestOfAFullHistory)
{
    QList<VeranoxRuntimeLogEntry> history;
    for (int number = 0; number < 500; ++number)
        history.append(stored(QString::number(number)));
    file->loading.answer(history);
    prepare();
    EXPECT_EQ(store->runtimeLog().size(), 500);
    EXPECT_EQ(store->runtimeLog().first().message, u"1"_s);
}

TEST_F(StoreLogPersistence, LogsTheStartOfTheSession)
{
    prepare();
    ASSERT_EQ(store->runtimeLog().size(), 1);
    const auto &entry = store->runtimeLog().first();
    EXPECT_EQ(entry.eventCode, u"app_session_started"_s);
    EXPECT_EQ(entry.level, u"info"_s);
    EXPECT_EQ(entry.component, u"macos_app"_s);
    EXPECT_EQ(entry.correlationID, std::nullopt);
    const auto identity = VeranoxSessionIdentity::of({});
    EXPECT_EQ(entry.message,
        u"[APP] session started: version=unknown build_number=7 build_id=unknown build_commit=unknown "
        "build_date=unknown build_channel=unknown bundle=app.veranox macOS=%1 arch=%2 session_id=%3 "
        "component_instance_id=%4 log_schema_version=2 event_redaction_version=1"_s.arg(
            identity.systemVersion, identity.architecture, diagnostics.sessionID, diagnostics.componentInstanceID));
    EXPECT_EQ(file->written, store->runtimeLog());
}

TEST_F(StoreLogPersistence, LoadsOnlyOnce)
{
    prepare();
    prepare();
    EXPECT_EQ(file->limits.size(), 1);
    EXPECT_EQ(store->runtimeLog().size(), 1);
}

TEST_F(StoreLogPersistence, GoesOnWhenTheHistoryCannotBeLoaded)
{
    file->loading.fail(diskError(u"No such disk"_s));
    file->appending.hold();
    store->appendLog(u"before"_s);
    prepare();
    EXPECT_EQ(store->runtimeLogPersistenceError(), u"Activity history could not be loaded: No such disk"_s);
    ASSERT_EQ(store->runtimeLog().size(), 2);
    EXPECT_EQ(store->runtimeLog().last().sequence, 2U);
    prepare();
    EXPECT_EQ(file->limits.size(), 1);
    file->appending.release();
    world.run();
    EXPECT_EQ(store->runtimeLogPersistenceError(), std::nullopt);
    EXPECT_EQ(file->written.size(), 2);
}

TEST(SessionIdentity, NamesTheMachineAndWhatTheBundleLeavesOut)
{
    struct utsname machine{};
    ASSERT_EQ(::uname(&machine), 0);
    const auto release = QString::fromLatin1(machine.release);
    static const QRegularExpression numbers(u"^([0-9]+)\\.([0-9]+)(?:\\.([0-9]+))?"_s);
    const auto parts = numbers.match(release);
    ASSERT_TRUE(parts.hasMatch()) << qPrintable(release);
    const QString patch = parts.captured(3).isEmpty() ? u"0"_s : parts.captured(3);
    const auto processor = QString::fromLatin1(machine.machine);

    const auto identity = VeranoxSessionIdentity::of({});
    EXPECT_EQ(identity.bundleIdentifier, u"unknown"_s);
    EXPECT_EQ(identity.build.version, u"unknown"_s);
    EXPECT_EQ(identity.systemVersion, parts.captured(1) + u'.' + parts.captured(2) + u'.' + patch);
    EXPECT_EQ(identity.systemName, QString::fromLatin1(machine.sysname));
    EXPECT_EQ(identity.architecture, processor == u"aarch64" ? u"arm64"_s : processor);
}

TEST(SessionIdentity, TakesTheBundleAtItsWord)
{
    const auto identity = VeranoxSessionIdentity::of(
        {{u"CFBundleIdentifier"_s, u"app.veranox"_s}, {u"CFBundleShortVersionString"_s, u"1.2"_s}});
    EXPECT_EQ(identity.bundleIdentifier, u"app.veranox"_s);
    EXPECT_EQ(identity.build.version, u"1.2"_s);
}

} // namespace
