#pragma once
#include "Service/Config/IndexedConfig.h"
#include <cstddef>
#include <cstdint>
#include <string>

namespace veranox {

/// The host name of a profile's node: the configured one, or one derived from the hostname base. Also for a name that
/// the document does not hold.
std::string nodeHostname(const ConfigDocument &document, const std::string &profile);
std::string nodeHostname(const IndexedConfig &config, const std::string &profile);

/// Why what stands on a profile that the document does not hold cannot run, as a sentence.
std::string unconfiguredProfile(const std::string &profile);

/// Where the proxies of one profile listen, host:port each.
struct ProfileProxies {
    std::string http;
    std::string socks5;
};

/// The proxies of the profile at `index`: the configured ones, or those assigned from the bases. What would lie beyond
/// the last port is written as it was computed.
ProfileProxies profileProxies(const ConfigDocument &document, std::size_t index);

/// The UDP port of the profile at `index`: the configured one, or one from the base; 0 when the system picks.
std::int64_t profileUDPPort(const ConfigDocument &document, std::size_t index);

} // namespace veranox
