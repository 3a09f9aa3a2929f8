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

/// Who listens at the endpoint, or at all addresses with its port, as far as the system tells this user.
std::optional<PortHolder> findPortHolder(const LoopbackEndpoint &endpoint);

} // namespace veranox
