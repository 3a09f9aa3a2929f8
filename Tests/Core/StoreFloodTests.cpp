// What a service says, all the way from its pipe through the store to the disk.
#include "Core/VeranoxRuntimeClient.h"
#include "Core/VeranoxStore.h"
#include "Log/VeranoxRuntimeLogFile.h"
#include "Tests/Core/FloodWatch.h"
#include "Tests/Core/OwnAddress.h"
#include "Tests/Support/FakeAPIClient.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RealWorld.h"
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 memoryBound = 64 * 1024 * 1024; // what waits for the disk is 8 MiB in the file, some 30 in memory

class StoreFlood : public ::testing::Test {
protected:
    // Starts the store's own service, which floods its output and ends; returns when the log has its last line.
    void hear(const QByteArray &pattern, int megabytes)
    {
        const FloodWatch watch;
        launch({u"flood:%1:%2"_s.arg(megabytes).arg(QString::fromLatin1(pattern.toHex())), u"exit:0"_s});
        EXPECT_TRUE(world.runUntil([this] { return says(u"[GUI] exited with status 0"_s); }, 50s));
        if (PeakMemory::isMeaningful)
            EXPECT_LT(watch.growth(), memoryBound);
        EXPECT_LT(watch.longestWork(), 100); // ms; a few without a sanitizer
        EXPECT_EQ(store->runtimeLogPersistenceError(), std::nullopt);
    }

    void launch(const QStringList &instructions)
    {
        const VeranoxDiagnosticSession session = VeranoxDiagnosticSession::make();
        auto service = std::make_unique<FakeAPIClient>(world.queue);
        service->health.answer(false);
        store = std::make_unique<VeranoxStore>(world.queue,
            VeranoxStore::Collaborators{.apiClient = std::move(service),
                .runtimeClient = std::make_unique<VeranoxRuntimeClient>(world.queue, ownAddress(), session),
                .cliCommand = VeranoxCommand{.executableURL = QUrl::fromLocalFile(QStringLiteral(SERVICE_DOUBLE)),
                    .leadingArguments = instructions},
                .diagnostics = session,
                .failureNotifier = nullptr,
                .runtimeLogPersistence = std::make_unique<VeranoxRuntimeLogFile>(world.queue, path,
                    VeranoxRuntimeLogFile::defaultMaxBytes, VeranoxRuntimeLogFile::defaultBackupCount)});
        store->startRouter();
    }

    bool says(const QString &message) const
    {
        return std::ranges::any_of(
            store->runtimeLog(), [&](const VeranoxRuntimeLogEntry &entry) { return entry.message == message; });
    }

    // What a later run would load, once everything is written.
    QList<VeranoxRuntimeLogEntry> kept()
    {
        store.reset();
        VeranoxRuntimeLogFile file(
            world.queue, path, VeranoxRuntimeLogFile::defaultMaxBytes, VeranoxRuntimeLogFile::defaultBackupCount);
        QList<VeranoxRuntimeLogEntry> entries;
        jobs::JobScope scope(world.queue);
        const auto loading = scope.start(load(&file, &entries));
        EXPECT_TRUE(world.runUntil([&] { return loading.finished(); }));
        return entries;
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"logs/activity.jsonl"_s);
    RealWorld world;
    std::unique_ptr<VeranoxStore> store;

private:
    static jobs::Async<> load(VeranoxRuntimeLogFile *file, QList<VeranoxRuntimeLogEntry> *into)
    {
        *into = co_await file->loadRecent(1'000'000);
    }
};

} // namespace

TEST_F(StoreFlood, linesOfAnOrdinaryLength)
{
    hear(QByteArray(79, 'x') + '\n', 10);
}

TEST_F(StoreFlood, noLineEndAtAll)
{
    hear("x", 20);
}

TEST_F(StoreFlood, shortLines)
{
    hear("xxxxxxx\n", 1);
}

TEST_F(StoreFlood, charactersOfManyPiecesAndNoLineEnd)
{
    hear("e\xcc\x81", 10);
}

TEST_F(StoreFlood, binaryRubbish)
{
    hear("\xff\n", 100);
}

TEST_F(StoreFlood, theFilesKeepTheirSizeAndTheirOrder)
{
    hear(QByteArray(79, 'x') + '\n', 10);
    const auto entries = kept();
    EXPECT_GT(entries.size(), 10'000);
    for (qsizetype index = 1; index < entries.size(); ++index)
        ASSERT_GT(entries[index].sequence, entries[index - 1].sequence);
    const QDir logs(QFileInfo(path).path());
    for (const QFileInfo &file : logs.entryInfoList(QDir::Files))
        EXPECT_LE(file.size(), VeranoxRuntimeLogFile::defaultMaxBytes) << qPrintable(file.fileName());
    EXPECT_EQ(logs.entryList(QDir::Files).size(), 4);
}
