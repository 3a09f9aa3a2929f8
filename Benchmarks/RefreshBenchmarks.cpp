// What one refresh costs the main thread once its lists are decoded: taking them over, deriving the icon, telling
// everyone. Each round brings lists in which every row differs from the one before.
#include "Core/VeranoxStore.h"
#include "Tests/Support/FakeAPIClient.h"
#include "Tests/Support/FakeRuntimeClient.h"
#include "Tests/Support/VirtualTime.h"
#include <QCoreApplication>
#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

QList<VeranoxTunnel> tunnels(int count, int activeConnections)
{
    QList<VeranoxTunnel> list(count);
    for (int index = 0; index < count; ++index) {
        list[index].name = u"tunnel-%1"_s.arg(index);
        list[index].state = u"listening"_s;
        list[index].activeConns = activeConnections;
    }
    return list;
}

QList<VeranoxPublication> publications(int count, int activeConnections)
{
    QList<VeranoxPublication> list(count);
    for (int index = 0; index < count; ++index) {
        list[index].name = u"publication-%1"_s.arg(index);
        list[index].state = u"listening"_s;
        list[index].activeConns = activeConnections;
    }
    return list;
}

void applyRefresh(benchmark::State &state)
{
    jobs::World world;
    auto client = std::make_unique<FakeAPIClient>(world.queue);
    FakeAPIClient &service = *client;
    service.config.answer({.router = VeranoxRouterConfig::defaults()});
    service.editableConfig.answer(VeranoxEditableConfig::emptyForFirstProfile());
    VeranoxProfile home;
    home.name = u"home"_s;
    home.status.ok = true;
    service.profiles.answer({home});
    VeranoxStore store(world.queue,
        VeranoxStore::Collaborators{.apiClient = std::move(client),
            .runtimeClient = std::make_unique<FakeRuntimeClient>(),
            .diagnostics = VeranoxDiagnosticSession::make()});

    const int rows = static_cast<int>(state.range(0));
    const QList<VeranoxTunnel> tunnelRounds[] = {tunnels(rows, 0), tunnels(rows, 1)};
    const QList<VeranoxPublication> publicationRounds[] = {publications(rows, 0), publications(rows, 1)};
    std::chrono::nanoseconds longest{};
    for (int round = 0; auto step : state) {
        (void)step;
        service.tunnels.answer(tunnelRounds[round % 2]);
        service.publications.answer(publicationRounds[round % 2]);
        ++round;
        const auto begin = std::chrono::steady_clock::now();
        store.requestRefresh();
        world.run();
        longest = std::max(longest, std::chrono::steady_clock::now() - begin);
    }
    if (store.serviceState() != ServiceState::online() || store.tunnels().size() != rows)
        state.SkipWithError("the refresh did not arrive");
    state.counters["longest_ms"] = std::chrono::duration<double, std::milli>(longest).count();
}

BENCHMARK(applyRefresh)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
