#pragma once
#include "Service/Files/Descriptor.h"
#include <cstdint>
#include <string_view>

namespace veranox::load {

/// A connection to that port of 127.0.0.1, without Nagle's delay. Throws std::system_error.
Descriptor connectTo(std::uint16_t port);
/// A listener at a port of 127.0.0.1 that the system picks.
Descriptor listenAnywhere();
std::uint16_t portOf(const Descriptor &listener);

/// Both throw std::system_error, also when the other side ends.
void sendAll(const Descriptor &socket, std::string_view data);
/// What came, at most as much as there is room for.
std::string_view receive(const Descriptor &socket, char *room, std::size_t size);

/// Closes with a reset, which leaves no port behind that waits.
void drop(Descriptor socket);

} // namespace veranox::load
