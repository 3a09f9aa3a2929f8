#include "Service/Net/LoopbackEndpoint.h"
#include "Service/Net/LoopbackListener.h"
#include "Service/Net/PortHolder.h"
#include "Service/Text/ServiceProblem.h"
#include <gtest/gtest.h>
#include <unistd.h>

namespace veranox {

namespace {

TEST(LoopbackEndpoint, Accepted)
{
    const std::pair<std::string, LoopbackEndpoint> table[] = {
        {"127.0.0.1:43200", {"127.0.0.1", 43200}},
        {"localhost:1", {"127.0.0.1", 1}},
        {"LocalHost:65535", {"127.0.0.1", 65535}},
        {"[::1]:80", {"::1", 80}},
        {"127.0.0.1:0", {"127.0.0.1", 0}},
    };
    for (const auto &[text, endpoint] : table)
        EXPECT_EQ(parseLoopbackEndpoint(text, 0), endpoint) << text;
}

TEST(LoopbackEndpoint, Refused)
{
    const std::pair<std::string, std::string> table[] = {
        {"", "must be HOST:PORT"},
        {"43200", "must be HOST:PORT"},
        {"127.0.0.1", "must be HOST:PORT"},
        {"[::1]", "must be HOST:PORT"},
        {"0.0.0.0:1", "must be bound to loopback"},
        {"[::]:1", "must be bound to loopback"},
        {":1", "must be bound to loopback"},
        {"*:1", "must be bound to loopback"},
        {"127.0.0.2:1", "must be bound to loopback"},
        {"127.1:1", "must be bound to loopback"},
        {"::1:1", "must be bound to loopback"},
        {"192.168.1.5:1", "must be bound to loopback"},
        {"localhost.evil.example:1", "must be bound to loopback"},
        {"127.0.0.1 :1", "must be bound to loopback"},
        {"127.0.0.1:", "must end in a port"},
        {"127.0.0.1:65536", "must end in a port"},
        {"127.0.0.1:-1", "must end in a port"},
        {"127.0.0.1:+1", "must end in a port"},
        {"127.0.0.1:0x10", "must end in a port"},
        {"127.0.0.1:1 ", "must end in a port"},
        {"127.0.0.1:99999999999999999999", "must end in a port"},
    };
    for (const auto &[text, beginning] : table) {
        try {
            parseLoopbackEndpoint(text, 0);
            ADD_FAILURE() << text << " was accepted";
        } catch (const std::invalid_argument &problem) {
            EXPECT_TRUE(std::string(problem.what()).starts_with(beginning)) << text << ": " << problem.what();
        }
    }
    EXPECT_THROW(parseLoopbackEndpoint("127.0.0.1:0", 1), std::invalid_argument);
}

TEST(LoopbackEndpoint, Text)
{
    EXPECT_EQ(toText({"127.0.0.1", 5}), "127.0.0.1:5");
    EXPECT_EQ(toText({"::1", 5}), "[::1]:5");
}

TEST(LoopbackListener, SaysWhoHoldsTheAddress)
{
    boost::asio::io_context context;
    const auto holder = listenOnLoopback(context, {"127.0.0.1", 0});
    const LoopbackEndpoint taken{"127.0.0.1", holder.local_endpoint().port()};
    const std::optional<PortHolder> found = findPortHolder(taken);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->process, ::getpid());
    try {
        listenOnLoopback(context, taken);
        ADD_FAILURE() << "the address was given twice";
    } catch (const ServiceProblem &problem) {
        EXPECT_EQ(problem.what(),
            "The address " + toText(taken) + " is taken by " + found->program + " (process "
                + std::to_string(::getpid()) + "); end that program or choose another address with --listen.");
    }
}

TEST(PortHolder, NobodyHoldsAFreePort)
{
    boost::asio::io_context context;
    std::uint16_t port = 0;
    {
        const auto holder = listenOnLoopback(context, {"127.0.0.1", 0});
        port = holder.local_endpoint().port();
        EXPECT_FALSE(findPortHolder({"::1", port})) << "the other loopback address is free";
    }
    EXPECT_FALSE(findPortHolder({"127.0.0.1", port}));
}

} // namespace

} // namespace veranox
