// Lines of the activity log from the text to the disk, ten thousand at a time, beside what the same bytes cost when
// they are only appended to a file that is opened for each line.
#include "Core/VeranoxStore.h"
#include "Log/VeranoxRuntimeLogFile.h"
#include "Tests/Support/FakeAPIClient.h"
#include "Tests/Support/FakeRuntimeClient.h"
#include "Tests/Support/MainThreadHeartbeat.h"
#include "Tests/Support/RealWorld.h"
#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

constexpr int burst = 10'000;

const QString plainLine = u"[GUI] 2024/05/01 12:30:05 accepted connection from 127.0.0.1:51234 on listener web"_s;
const QString fullLine =
    u"[GUI] request finished session_id=0f6b3c1e-9d2a-4e8b-8c11-5a7f00d1e2c3 "
    "correlation_id=5d0a7c44-0b8f-4f39-9e55-6f1f20b6d1aa request_id=77aa12e0-3f53-44c1-b7a4-d1b5f6d0c9e8 "
    "component_instance_id=c2b1f7d4-8a3e-4a6b-9b1d-2e7c5f8a9b0c config_generation=17 attempt=2 "
    "event_code=control_request_finished level=INFO component=control_api operation=\"save config\" "
    "outcome=failed failure_stage=validate retryable=true http_status=422 duration_ms=37"_s;

QList<VeranoxProfile> profiles(qint64 count)
{
    QList<VeranoxProfile> list(count);
    for (qsizetype index = 0; index < count; ++index)
        list[index].name = u"customer-%1"_s.arg(index);
    return list;
}

// Counts what has reached the disk.
class CountedLog final : public VeranoxRuntimeLogPersisting {
public:
    CountedLog(jobs::MainQueue &queue, const QString &path)
        : m_file(queue, path, VeranoxRuntimeLogFile::defaultMaxBytes, VeranoxRuntimeLogFile::defaultBackupCount)
    {
    }
    std::optional<QString> fileURL() const override { return m_file.fileURL(); }
    jobs::Async<QList<VeranoxRuntimeLogEntry>> loadRecent(int limit) override { return m_file.loadRecent(limit); }
    jobs::Async<> append(QList<VeranoxRuntimeLogEntry> entries) override
    {
        const qsizetype count = entries.size();
        co_await m_file.append(std::move(entries));
        written += static_cast<int>(count);
    }
    int written = 0;

private:
    VeranoxRuntimeLogFile m_file;
};

double threadSeconds()
{
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

// The most processor time that the main thread used between two turns of its event loop: what others take of a busy
// machine does not count.
class LongestTurn {
public:
    LongestTurn()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            const double before = std::exchange(m_before, threadSeconds());
            m_seconds = std::max(m_seconds, m_before - before);
        });
        m_timer.start(1);
    }
    double milliseconds() const { return m_seconds * 1000; }

private:
    QTimer m_timer;
    double m_before = threadSeconds();
    double m_seconds = 0;
};

class LoggingWorld {
public:
    explicit LoggingWorld(qint64 profileCount) : m_jobs(m_world.queue)
    {
        auto client = std::make_unique<FakeAPIClient>(m_world.queue);
        auto file = std::make_unique<CountedLog>(m_world.queue, m_folder.filePath(u"logs/activity.jsonl"_s));
        m_file = file.get();
        client->config.answer({.router = VeranoxRouterConfig::defaults()});
        client->editableConfig.answer(VeranoxEditableConfig::emptyForFirstProfile());
        client->profiles.answer(profiles(profileCount));
        m_store = std::make_unique<VeranoxStore>(m_world.queue,
            VeranoxStore::Collaborators{.apiClient = std::move(client),
                .runtimeClient = std::make_unique<FakeRuntimeClient>(),
                .diagnostics = VeranoxDiagnosticSession::make(),
                .runtimeLogPersistence = std::move(file)});
        m_store->requestRefresh();
        m_ready = m_world.runUntil([&] { return m_store->profiles().size() == profileCount; });
    }

    bool ready() const { return m_ready; }
    // As the output of the service arrives: line after line, each giving way to whatever else is ready.
    void logBurst(const QString &line) { m_jobs.start(logging(line)); }
    bool waitForDisk(MainThreadHeartbeat &heartbeat, int lines)
    {
        return heartbeat.turnLoopUntil([&] { return m_file->written >= lines; });
    }
    int written() const { return m_file->written; }
    VeranoxStore &store() { return *m_store; }

private:
    jobs::Async<> logging(QString line)
    {
        for (int count = 0; count < burst; ++count) {
            m_store->appendLog(line);
            co_await jobs::yield();
        }
    }
    RealWorld m_world;
    QTemporaryDir m_folder;
    CountedLog *m_file = nullptr;
    std::unique_ptr<VeranoxStore> m_store;
    bool m_ready = false;
    jobs::JobScope m_jobs;
};

// From appendLog to the disk. main_us: processor time of the main thread for each line, waking up for its write
// included; longest_turn_ms: see above.
void logToDisk(benchmark::State &state, const QString &line)
{
    LoggingWorld world(state.range(0));
    double longestTurn = 0;
    const double before = threadSeconds();
    for (auto step : state) {
        (void)step;
        MainThreadHeartbeat heartbeat;
        const LongestTurn turn;
        const int wanted = world.written() + burst;
        world.logBurst(line);
        if (!world.ready() || !world.waitForDisk(heartbeat, wanted) || world.store().runtimeLogPersistenceError())
            return state.SkipWithError("the lines did not reach the disk");
        longestTurn = std::max(longestTurn, turn.milliseconds());
    }
    const double lines = static_cast<double>(state.iterations()) * burst;
    state.SetItemsProcessed(state.iterations() * burst);
    state.counters["main_us"] = (threadSeconds() - before) * 1e6 / lines;
    state.counters["longest_turn_ms"] = longestTurn;
}

// appendLog alone, as its caller sees it: one call for each line.
void appendLogCall(benchmark::State &state, const QString &line)
{
    LoggingWorld world(state.range(0));
    MainThreadHeartbeat heartbeat;
    for (auto step : state) {
        (void)step;
        for (int count = 0; count < burst; ++count)
            world.store().appendLog(line);
        state.PauseTiming();
        if (!world.waitForDisk(heartbeat, world.written() + burst))
            return state.SkipWithError("the lines did not reach the disk");
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * burst);
}

// The floor: the record's bytes, appended to a file that is opened for each.
void appendBytesToFile(benchmark::State &state, const QString &line)
{
    const QByteArray record =
        VeranoxRuntimeLogEntry{.id = QUuid::createUuid(), .timestamp = QDateTime::currentDateTimeUtc(), .message = line}
            .toJson();
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"bytes"_s);
    for (auto step : state) {
        (void)step;
        for (int count = 0; count < burst; ++count) {
            QFile file(path);
            if (!file.open(QIODevice::Append) || file.write(record) != record.size())
                return state.SkipWithError("cannot write");
        }
        state.PauseTiming();
        QFile::remove(path);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * burst);
}

BENCHMARK_CAPTURE(appendBytesToFile, plain, plainLine)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(appendBytesToFile, full, fullLine)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(appendLogCall, plain, plainLine)->Arg(1)->Arg(200)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(appendLogCall, full, fullLine)->Arg(1)->Arg(200)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(logToDisk, plain, plainLine)->Arg(1)->Arg(200)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(logToDisk, full, fullLine)->Arg(1)->Arg(200)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
