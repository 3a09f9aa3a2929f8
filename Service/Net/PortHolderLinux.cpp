#include "Service/Net/PortHolder.h"

#include "Service/Text/Words.h"
#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <set>
#include <span>
#include <sstream>
#include <vector>

namespace veranox {

namespace {

namespace fs = std::filesystem;

/// One line of /proc/net/tcp: "sl local remote st tx:rx tr:when retrnsmt uid timeout inode …", addresses in
/// hexadecimal.
struct SocketLine {
    std::string local;
    std::string state;
    std::string inode;
};

std::optional<SocketLine> parseLine(const std::string &line)
{
    std::istringstream words(line);
    std::string skipped;
    SocketLine result;
    words >> skipped >> result.local >> skipped >> result.state;
    for (int i = 0; i < 5; ++i)
        words >> skipped;
    words >> result.inode;
    return words ? std::optional(result) : std::nullopt;
}

/// The endpoint's own address and "all addresses" stand in the way; another address of the computer does not.
bool isInTheWay(const std::string &local, const LoopbackEndpoint &endpoint)
{
    static constexpr std::array<std::string_view, 3> ofIPv4{"0100007F", "00000000", "00000000000000000000000000000000"};
    static constexpr std::array<std::string_view, 2> ofIPv6{
        "00000000000000000000000001000000", "00000000000000000000000000000000"};
    const std::size_t colon = local.find(':');
    if (colon == std::string::npos)
        return false;
    std::uint16_t port = 0;
    std::from_chars(local.data() + colon + 1, local.data() + local.size(), port, 16);
    const std::span<const std::string_view> addresses =
        endpoint.host == "127.0.0.1" ? std::span<const std::string_view>(ofIPv4) : ofIPv6;
    const std::string_view address = std::string_view(local).substr(0, colon);
    return port == endpoint.port && std::ranges::find(addresses, address) != addresses.end();
}

constexpr std::string_view listenState = "0A";

/// The sockets that stand in the way of that endpoint.
std::vector<SocketLine> socketsAt(const LoopbackEndpoint &endpoint)
{
    std::vector<SocketLine> found;
    for (const char *table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        std::ifstream file(table);
        for (std::string line; std::getline(file, line);)
            if (auto socket = parseLine(line); socket && isInTheWay(socket->local, endpoint))
                found.push_back(std::move(*socket));
    }
    return found;
}

std::set<std::string> listenersAt(const LoopbackEndpoint &endpoint)
{
    std::set<std::string> links;
    for (const SocketLine &socket : socketsAt(endpoint))
        if (socket.state == listenState)
            links.insert("socket:[" + socket.inode + "]");
    return links;
}

bool holdsOneOf(const fs::path &process, const std::set<std::string> &links)
{
    std::error_code failure;
    for (fs::directory_iterator entry(process / "fd", failure), end; !failure && entry != end;
        entry.increment(failure)) {
        std::error_code gone;
        if (links.contains(fs::read_symlink(entry->path(), gone).string()))
            return true;
    }
    return false;
}

std::optional<pid_t> processOf(const fs::path &folder)
{
    const std::string name = folder.filename().string();
    pid_t process = 0;
    const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), process);
    return failure == std::errc{} && end == name.data() + name.size() ? std::optional(process) : std::nullopt;
}

std::string programOf(const fs::path &process)
{
    std::ifstream file(process / "comm");
    std::string name;
    std::getline(file, name);
    return printable(name);
}

} // namespace

PortUse portUse(const LoopbackEndpoint &endpoint)
{
    const std::vector<SocketLine> sockets = socketsAt(endpoint);
    if (sockets.empty())
        return PortUse::none;
    const bool anyListens =
        std::ranges::any_of(sockets, [](const SocketLine &socket) { return socket.state == listenState; });
    return anyListens ? PortUse::listening : PortUse::passing;
}

std::optional<PortHolder> findPortHolder(const LoopbackEndpoint &endpoint)
{
    const std::set<std::string> links = listenersAt(endpoint);
    if (links.empty())
        return std::nullopt;
    std::error_code failure;
    for (fs::directory_iterator entry("/proc", failure), end; !failure && entry != end; entry.increment(failure))
        if (const std::optional<pid_t> process = processOf(entry->path()); process && holdsOneOf(entry->path(), links))
            return PortHolder{*process, programOf(entry->path())};
    return std::nullopt;
}

} // namespace veranox
