#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace veranox {

/// Where something is to be reached: a host name or an address, and a port.
struct HostPort {
    std::string host; // an IPv6 address without its brackets
    std::uint16_t port = 0;

    bool operator==(const HostPort &) const = default;
};

/// Reads "db.example:5432", "10.0.0.1:80", "[::1]:80". Throws std::invalid_argument with the end of a sentence about
/// the text ("must be host:port, …"). The host never begins with a hyphen, so it can stand among a program's arguments.
HostPort parseHostPort(std::string_view text);

/// True for "localhost" and for the addresses that only this computer can reach.
bool isLoopbackHost(std::string_view host);

} // namespace veranox
