#pragma once
#include "Service/Net/LoopbackEndpoint.h"
#include <optional>
#include <string>
#include <sys/types.h>

namespace veranox {

/// The program that listens at an address.
struct PortHolder {
    pid_t process;
    std::string program;
};

/// What a port that cannot be bound is used for, as far as the system tells.
enum class PortUse {
    none, // nothing that it shows
    listening,
    passing, // connections alone: the port is one of those that the system picks for outgoing ones
};

PortUse portUse(const LoopbackEndpoint &endpoint);

/// Who listens at the endpoint, or at all addresses with its port, as far as the system tells this user.
std::optional<PortHolder> findPortHolder(const LoopbackEndpoint &endpoint);

} // namespace veranox
