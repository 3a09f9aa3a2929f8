#include "Benchmarks/Load/Measures.h"

#include "Benchmarks/Load/Sockets.h"
#include <algorithm>
#include <array>
#include <functional>
#include <future>
#include <iostream>
#include <sstream>
#include <vector>

namespace veranox::load {

namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

/// Runs the work once for each client, all at the same time, and puts together what they found.
std::vector<double> onEachClient(const Load &load, const std::function<std::vector<double>(Clock::time_point)> &work)
{
    const Clock::time_point end = Clock::now() + std::chrono::duration_cast<Clock::duration>(load.time);
    std::vector<std::future<std::vector<double>>> clients;
    clients.reserve(load.clients);
    for (std::size_t i = 0; i < load.clients; ++i)
        clients.push_back(std::async(std::launch::async, work, end));
    std::vector<double> found;
    for (std::future<std::vector<double>> &client : clients)
        std::ranges::copy(client.get(), std::back_inserter(found));
    return found;
}

double quantile(const std::vector<double> &sorted, double part)
{
    return sorted.empty() ? 0 : sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
}

std::string describe(std::vector<double> times, const Load &load)
{
    std::ranges::sort(times);
    std::ostringstream line;
    line << std::fixed << "rate=" << static_cast<double>(times.size()) / load.time.count()
         << " p50=" << quantile(times, 0.5) << " p99=" << quantile(times, 0.99);
    return line.str();
}

void askOnce(const Descriptor &socket)
{
    char answer = 0;
    sendAll(socket, "?");
    receive(socket, &answer, 1);
}

/// How long each of them took, one behind the other until the end.
std::vector<double> timed(Clock::time_point end, const std::function<void()> &step)
{
    std::vector<double> times;
    for (Clock::time_point begin = Clock::now(); begin < end; begin = Clock::now()) {
        step();
        times.push_back(Microseconds(Clock::now() - begin).count());
    }
    return times;
}

void readOnce(const Descriptor &socket, const std::string &request)
{
    std::array<char, 4096> room{};
    sendAll(socket, request);
    std::string answer;
    while (!answer.ends_with('}')) // the one of health is flat and short
        answer += receive(socket, room.data(), room.size());
}

} // namespace

std::string measureThroughput(const Load &load)
{
    const std::vector<double> sent = onEachClient(load, [&load](Clock::time_point end) {
        const std::string block(256 * 1024, 'x');
        const Descriptor socket = connectTo(load.port);
        double bytes = 0;
        for (; Clock::now() < end; bytes += static_cast<double>(block.size()))
            sendAll(socket, block);
        return std::vector{bytes};
    });
    double bytes = 0;
    for (const double count : sent)
        bytes += count;
    return "bytes=" + std::to_string(bytes / load.time.count());
}

std::string measureNewConnections(const Load &load)
{
    return describe(onEachClient(load,
                        [&load](Clock::time_point end) {
                            return timed(end, [&load] {
                                Descriptor socket = connectTo(load.port);
                                askOnce(socket);
                                drop(std::move(socket));
                            });
                        }),
        load);
}

std::string measureEcho(const Load &load)
{
    return describe(onEachClient(load,
                        [&load](Clock::time_point end) {
                            const Descriptor socket = connectTo(load.port);
                            return timed(end, [&socket] { askOnce(socket); });
                        }),
        load);
}

std::string measureReads(const Load &load)
{
    const std::string request = "GET /api/health HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(load.port) + "\r\n\r\n";
    return describe(onEachClient(load,
                        [&](Clock::time_point end) {
                            const Descriptor socket = connectTo(load.port);
                            return timed(end, [&] { readOnce(socket, request); });
                        }),
        load);
}

std::string holdIdle(const Load &load)
{
    std::vector<Descriptor> clients;
    while (clients.size() < load.clients) {
        clients.push_back(connectTo(load.port));
        askOnce(clients.back());
    }
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);) { }
    return "held=" + std::to_string(clients.size());
}

} // namespace veranox::load
