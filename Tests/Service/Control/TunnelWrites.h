#pragma once
#include "Service/Json/JsonText.h"
#include "Tests/Service/Support/RefusalTable.h"
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

namespace veranox::test::tunnel_writes {

namespace json = boost::json;

inline constexpr std::string_view file = R"({"Version": 1, "Router": {},
    "Tailscale": {"TailscaleBin": "tailscale", "TailscaledBin": "tailscaled"},
    "Paths": {"AppSupportDir": "~/a", "ConfigDir": "~/c"},
    "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false, "AllowIPLiterals": false,
        "AllowUnknownTSNet": false},
    "Profiles": {"work": {"Suffixes": [".work.ts.net"]}},
    "Tunnels": {
        "db": {"Profile": "work", "Target": "db:5432", "Listen": "127.0.0.1:43300", "Note": "mine"},
        "cache": {"Profile": "work", "Target": "cache:6379", "Listen": "127.0.0.1:43301", "Disabled": true},
        "deep": {"Profile": "work", "Target": "deep:1", "Listen": "127.0.0.1:43302", "Mode": "ssh",
            "SSH": {"Bastion": "b", "User": "u", "Auth": "password", "IdentityFile": ""}}},
    "Publications": {"web": {"Profile": "work", "Target": "127.0.0.1:8080", "Port": 443}}})";

inline constexpr std::string_view good =
    R"({"Name": "new", "Tunnel": {"DisplayName": "New", "Profile": "work", "Mode": "native", "Listen": "",
        "Target": "new.work.ts.net:80", "Disabled": false}})";

/// The good save with members laid over it: those of the request, and those of its tunnel; null takes one away.
inline std::string save(const std::string &members, const std::string &tunnelMembers = "{}")
{
    json::object body = json::parse(good).as_object();
    const auto layOver = [](json::object &base, const std::string &text) {
        for (const auto &[key, value] : json::parse(text).as_object())
            value.is_null() ? void(base.erase(key)) : void(base[key] = value);
    };
    layOver(body["Tunnel"].as_object(), tunnelMembers);
    layOver(body, members);
    return json::serialize(body);
}

inline std::string savedTunnel(const std::string &members)
{
    return save("{}", members);
}

inline std::string ssh(const std::string &record)
{
    return savedTunnel(R"({"Mode": "ssh", "SSH": )" + record + "}");
}

class TunnelWrites : public ::testing::Test {
protected:
    std::vector<std::string> names(const ControlAnswer &answer)
    {
        EXPECT_EQ(answer.status, 200U) << errorOf(answer);
        std::vector<std::string> result;
        if (answer.body.is_array())
            for (const json::value &tunnel : answer.body.get_array())
                result.emplace_back(tunnel.at("Name").as_string());
        return result;
    }
    ControlAnswer post(const std::string &path, const std::string &body = "")
    {
        return bed.ask("POST", "/api/tunnels" + path, body);
    }
    json::value onDisk(const std::string &name) const
    {
        const json::object tunnels = parseJson(bed.folder().read("config.json")).at("Tunnels").as_object();
        return tunnels.contains(name) ? tunnels.at(name) : json::value(nullptr);
    }

    ApiBed bed{file};
};

} // namespace veranox::test::tunnel_writes
