#pragma once
#include <cstdint>
#include <string>

namespace veranox::test::lab_tunnel {

inline std::string at(std::uint16_t port)
{
    return "127.0.0.1:" + std::to_string(port);
}

/// A lab whose tunnel "t" listens at `listen` and leads to the given host; `host` is the lab's word for it.
inline std::string labWith(std::uint16_t listen, const std::string &host,
    const std::string &target = "h.tail1.ts.net:80", const std::string &profile = "", const std::string &tunnel = "")
{
    return R"({"version": 1, "tailnets": {"net": {"suffix": ".tail1.ts.net", "hosts": {"h": ")" + host
        + R"("}}}, "profiles": {"p": {"tailnet": "net")" + profile + R"(, "config": {"Suffixes": [".tail1.ts.net"]}}},
        "tunnels": {"t": {)"
        + tunnel + R"("config": {"Profile": "p", "Target": ")" + target + R"(", "Listen": ")" + at(listen) + R"("}}}})";
}

} // namespace veranox::test::lab_tunnel
