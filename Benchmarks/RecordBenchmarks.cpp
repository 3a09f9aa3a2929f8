#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "Base/Json/Json.h"
#include <QJsonDocument>
#include <benchmark/benchmark.h>
#include <map>

// How long the tunnel and publication lists of one refresh take to decode, beside a floor: the bare JSON parse of the
// same bytes. The counter `over_parse` is the ratio of the two in this run.
namespace {

QByteArray listOf(const QByteArray &element, std::int64_t count)
{
    QByteArray list = "[";
    for (std::int64_t index = 0; index < count; ++index) {
        if (index > 0)
            list += ',';
        list += QByteArray(element).replace("#", QByteArray::number(index));
    }
    return list + ']';
}

QByteArray tunnels(std::int64_t count)
{
    return listOf(R"({"Name":"database-#","DisplayName":"Database #","Profile":"acme","Mode":"ssh",
        "Listen":"127.0.0.1:43300","Target":"db-#.internal.example:5432","SSHBastion":"bastion.example","SSHUser":"me",
        "SSHAuth":"key","SSHIdentity":"/home/me/.ssh/id_ed25519","Disabled":false,"State":"listening","ActiveConns":3,
        "LastError":""})",
        count);
}

QByteArray publications(std::int64_t count)
{
    return listOf(R"({"Name":"web-#","DisplayName":"Website #","Profile":"acme","Target":"127.0.0.1:8080",
        "Reach":"tailnet","Port":443,"TLS":true,"Disabled":false,"State":"listening",
        "Address":"https://laptop.example.ts.net:443","ActiveConns":2,"LastError":"","LastActive":"2026-01-02T03:04:05Z",
        "Reachability":{"State":"unreachable","Peers":0,"Everyone":false,"Detail":"","Hint":{"HostAlias":"veranox",
        "NodeIP":"100.64.0.1","Source":"autogroup:member","HostsEntry":"\"veranox\": \"100.64.0.1\",",
        "Grant":"{\"src\": [\"autogroup:member\"], \"dst\": [\"veranox\"], \"ip\": [\"*\"]},",
        "PolicyURL":"https://login.example.com/admin/acls"}}})",
        count);
}

// Seconds for one bare parse, by count; the floor runs first.
std::map<std::int64_t, double> &floors()
{
    static std::map<std::int64_t, double> seconds;
    return seconds;
}

template <class Work> double secondsPerIteration(benchmark::State &state, Work work)
{
    const auto begin = std::chrono::steady_clock::now();
    for (auto iteration : state)
        work();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    return elapsed.count() / static_cast<double>(state.iterations());
}

void bareParse(benchmark::State &state)
{
    const QByteArray first = tunnels(state.range(0));
    const QByteArray second = publications(state.range(0));
    floors()[state.range(0)] = secondsPerIteration(state, [&] {
        benchmark::DoNotOptimize(QJsonDocument::fromJson(first));
        benchmark::DoNotOptimize(QJsonDocument::fromJson(second));
    });
    state.SetBytesProcessed(state.iterations() * (first.size() + second.size()));
}

void decode(benchmark::State &state)
{
    const QByteArray first = tunnels(state.range(0));
    const QByteArray second = publications(state.range(0));
    const double seconds = secondsPerIteration(state, [&] {
        benchmark::DoNotOptimize(decodeRecord<QList<VeranoxTunnel>>(first));
        benchmark::DoNotOptimize(decodeRecord<QList<VeranoxPublication>>(second));
    });
    state.SetBytesProcessed(state.iterations() * (first.size() + second.size()));
    state.counters["over_parse"] = seconds / floors()[state.range(0)];
}

} // namespace

BENCHMARK(bareParse)->Arg(10)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(decode)->Arg(10)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
