#pragma once
#include "Service/Config/ConfigDocument.h"
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace veranox {

/// A TCP port on loopback and what listens there, in words: `the PAC server`, `tunnel "db"`.
struct PortUse {
    std::int64_t port = 0;
    std::string by;

    bool operator==(const PortUse &) const = default;
};

/// Everything but the tunnels that listens: control API, router and the proxies of each profile.
std::vector<PortUse> routerPorts(const ConfigDocument &document, std::uint16_t controlPort);
/// The local ends of all tunnels that have an address.
std::vector<PortUse> tunnelPorts(const ConfigDocument &document);
/// The loopback services that publications lead to. Not ours, but what listens there instead would be published.
std::vector<PortUse> publishedPorts(const ConfigDocument &document);

/// The first use of that port, or null.
const PortUse *findUse(const std::vector<PortUse> &uses, std::int64_t port);

/// The port of "host:port"; 0 when the text is none.
std::int64_t portOf(std::string_view address);

} // namespace veranox
