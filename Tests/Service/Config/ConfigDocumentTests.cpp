#include "Service/Config/ConfigDocument.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using ::testing::ElementsAre;

TEST(ConfigDocument, RouterKeysMayBeMissing)
{
    const ConfigDocument document = parseConfig(R"({"Version": 1, "Router": {"HTTPProxy": null},
        "Tailscale": {"TailscaleBin": "a", "TailscaledBin": "b"}, "Paths": {"AppSupportDir": "c", "ConfigDir": "d"},
        "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false, "AllowIPLiterals": false,
        "AllowUnknownTSNet": false}})");
    EXPECT_EQ(document.router, RouterSettings{});
    EXPECT_TRUE(document.profiles.empty());
}

TEST(ConfigDocument, TunnelsWithoutAnAddressGetTheNextFreePorts)
{
    ConfigDocument document;
    document.router.tunnelListenBase = 50000;
    const std::pair<std::string, std::string> tunnels[] = {
        {"a", ""}, {"b", "127.0.0.1:50001"}, {"c", ""}, {"d", "127.0.0.1:9"}};
    for (const auto &[name, listen] : tunnels)
        document.tunnels.emplace_back(name, TunnelSettings{}).second.listen = listen;
    EXPECT_TRUE(assignTunnelAddresses(document, 43200));
    std::vector<std::string> addresses;
    for (const auto &[name, tunnel] : document.tunnels)
        addresses.push_back(tunnel.listen);
    EXPECT_THAT(addresses, ElementsAre("127.0.0.1:50000", "127.0.0.1:50001", "127.0.0.1:50002", "127.0.0.1:9"));
    EXPECT_FALSE(assignTunnelAddresses(document, 43200));
}

TEST(ConfigDocument, PortsThatRunOutLeaveATunnelWithoutAddress)
{
    ConfigDocument document;
    document.router.tunnelListenBase = 65535;
    document.tunnels.emplace_back("a", TunnelSettings{});
    document.tunnels.emplace_back("b", TunnelSettings{});
    EXPECT_TRUE(assignTunnelAddresses(document, 43200));
    EXPECT_EQ(document.tunnels[0].second.listen, "127.0.0.1:65535");
    EXPECT_EQ(document.tunnels[1].second.listen, "");
}

} // namespace

} // namespace veranox
