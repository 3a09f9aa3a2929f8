// tunnel_load sink
// tunnel_load throughput|connections|echo|reads|idle PORT CLIENTS SECONDS
// Both ends of what Benchmarks/Process/tunnel.py measures. Prints a line of figures.
#include "Benchmarks/Load/Measures.h"
#include "Benchmarks/Load/Sink.h"
#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace veranox::load;

int run(const std::vector<std::string> &words)
{
    static const std::map<std::string, std::string (*)(const Load &)> measures{{"throughput", measureThroughput},
        {"connections", measureNewConnections}, {"echo", measureEcho}, {"reads", measureReads}, {"idle", holdIdle}};
    if (words == std::vector<std::string>{"sink"})
        serveSink();
    if (words.size() != 4 || !measures.contains(words[0]))
        throw std::invalid_argument(
            "sink, or one of throughput, connections, echo, reads and idle with PORT CLIENTS SECONDS");
    const Load load{.port = static_cast<std::uint16_t>(std::stoul(words[1])),
        .clients = std::stoul(words[2]),
        .time = std::chrono::duration<double>(std::stod(words[3]))};
    std::cout << measures.at(words[0])(load) << std::endl;
    return EXIT_SUCCESS;
}

} // namespace

int main(int count, char **words)
{
    try {
        const std::span<char *> all(words, static_cast<std::size_t>(count));
        return run(std::vector<std::string>(all.begin() + 1, all.end()));
    } catch (const std::exception &failure) {
        std::cerr << "tunnel_load: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
