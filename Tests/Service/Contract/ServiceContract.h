#pragma once
#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/ServiceProcess.h"
#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

namespace veranox::test::contract {

using Arguments = std::vector<std::string>;

inline const Arguments demo{"gui", "serve", "--listen", "127.0.0.1:0", "--lab", "demo"};
inline const Arguments plain{"gui", "serve", "--listen", "127.0.0.1:0"};

/// The real executable with a home folder of its own.
class ServiceContract : public ::testing::Test {
protected:
    boost::json::value get(std::uint16_t port, const std::string &path) const
    {
        RawClient client(port);
        const RawClient::Answer answer = client.exchange(client.request("GET", path));
        EXPECT_EQ(answer.result_int(), 200U) << path;
        return boost::json::parse(answer.body());
    }
    std::string tokenHeader() const
    {
        return "X-Veranox-Token: " + home.read(".local/share/Veranox/control.token").substr(0, 64) + "\r\n";
    }

    TemporaryFolder home;
};

} // namespace veranox::test::contract
