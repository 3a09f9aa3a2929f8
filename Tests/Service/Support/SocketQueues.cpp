#include "Tests/Service/Support/SocketQueues.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace veranox::test {

namespace {

/// The two numbers of a field of /proc/net/tcp: hexadecimal, with a colon between.
struct Pair {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
};

Pair pairOf(const std::string &field)
{
    const std::size_t colon = field.find(':');
    return {std::stoull(field.substr(0, colon), nullptr, 16), std::stoull(field.substr(colon + 1), nullptr, 16)};
}

} // namespace

SocketQueues socketQueues(std::uint16_t localPort, std::uint16_t remotePort)
{
    std::ifstream table("/proc/net/tcp");
    std::string line;
    std::getline(table, line); // the headings
    while (std::getline(table, line)) {
        std::istringstream fields(line);
        std::string number;
        std::string local;
        std::string remote;
        std::string state;
        std::string queues;
        fields >> number >> local >> remote >> state >> queues;
        if (pairOf(local).second != localPort || pairOf(remote).second != remotePort)
            continue;
        const auto [sending, receiving] = pairOf(queues);
        return {.sending = sending, .receiving = receiving};
    }
    throw std::runtime_error("no connection from port " + std::to_string(localPort));
}

} // namespace veranox::test
