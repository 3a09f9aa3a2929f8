// A log file in a folder of its own, in virtual time.
#pragma once
#include "Base/Failures/LocalizedError.h"
#include "Log/VeranoxRuntimeLogFile.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/VirtualTime.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

class LogFileWorld : public ::testing::Test {
protected:
    static constexpr std::int64_t unlimited = 1'000'000'000;

    LogFileWorld() : jobs(world.queue) { }

    void open(std::int64_t maxBytes = unlimited, int backupCount = 3)
    {
        log = std::make_unique<VeranoxRuntimeLogFile>(world.queue, path, maxBytes, backupCount);
    }

    static VeranoxRuntimeLogEntry entry(const QString &message)
    {
        return {.id = QUuid::createUuid(),
            .timestamp = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC),
            .message = message};
    }

    // An entry whose line, with its line feed, has exactly this size.
    static VeranoxRuntimeLogEntry entryOfSize(qsizetype bytes, QChar filler = u'x')
    {
        const qsizetype bare = entry({}).toJson().size() + 1;
        return entry(QString(bytes - bare, filler));
    }

    // The error text, or nothing when it went well.
    std::optional<QString> append(const VeranoxRuntimeLogEntry &entry) { return append(QList{entry}); }
    std::optional<QString> append(const QList<VeranoxRuntimeLogEntry> &entries)
    {
        const auto job = jobs.start(appending(log.get(), entries));
        world.run();
        return result;
    }

    QList<VeranoxRuntimeLogEntry> load(int limit)
    {
        jobs.start(loading(log.get(), limit));
        world.run();
        EXPECT_EQ(result, std::nullopt) << qPrintable(result.value_or(QString()));
        return loaded;
    }

    std::optional<QString> loadError()
    {
        jobs.start(loading(log.get(), 500));
        world.run();
        return result;
    }

    QStringList messages(int limit = 500)
    {
        QStringList texts;
        for (const VeranoxRuntimeLogEntry &entry : load(limit))
            texts.append(entry.message);
        return texts;
    }

    static QByteArray content(const QString &file)
    {
        QFile reader(file);
        return reader.open(QIODevice::ReadOnly) ? reader.readAll() : QByteArray("<cannot be read>");
    }

    static void write(const QString &file, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(file).path());
        QFile writer(file);
        ASSERT_TRUE(writer.open(QIODevice::WriteOnly));
        ASSERT_EQ(writer.write(bytes), bytes.size());
    }

    static unsigned mode(const QString &file)
    {
        struct stat found;
        return ::lstat(QFile::encodeName(file).constData(), &found) == 0 ? found.st_mode & 07777U : 0U;
    }

    QString backup(int index) const { return path + u'.' + QString::number(index); }

    QTemporaryDir home;
    QString folder = home.filePath(QStringLiteral("a/b/logs"));
    QString path = folder + QStringLiteral("/activity.jsonl");
    jobs::World world;
    std::unique_ptr<VeranoxRuntimeLogFile> log;
    QList<VeranoxRuntimeLogEntry> loaded;
    std::optional<QString> result; // of the last call
    jobs::JobScope jobs;

private:
    jobs::Async<> appending(VeranoxRuntimeLogFile *file, QList<VeranoxRuntimeLogEntry> entries)
    {
        result = QStringLiteral("never came back");
        try {
            co_await file->append(std::move(entries));
            result.reset();
        } catch (const LocalizedError &error) {
            result = error.localizedDescription();
        }
    }

    jobs::Async<> loading(VeranoxRuntimeLogFile *file, int limit)
    {
        result = QStringLiteral("never came back");
        loaded.clear();
        try {
            loaded = co_await file->loadRecent(limit);
            result.reset();
        } catch (const LocalizedError &error) {
            result = error.localizedDescription();
        }
    }
};
