#pragma once
#include <string>

namespace veranox {

/// What a path report is to find out.
struct PathQuestion {
    std::string target; // as the person wrote it: a URL, host:port, a host name or an address
    bool netcheck = false; // whether the profile's network is to be checked too
    unsigned pingCount = 3; // how often to connect; 1 to 10, anything else is brought into that range
};

} // namespace veranox
