#include "Tests/Service/Support/LabBench.h"
#include "Tests/Service/Tunnels/LabTunnel.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

using namespace test::lab_tunnel;
using test::LabBench;
using ::testing::HasSubstr;

TEST(SshTunnel, PasswordGoesWithItsTunnel)
{
    LabBench bench(labWith(test::freePort(), "echo"));
    TunnelSettings &tunnel = bench.document().tunnels.front().second;
    tunnel.mode = "ssh";
    tunnel.ssh = TunnelSSHSettings{.bastion = "h.tail1.ts.net", .user = "me", .auth = "password", .identityFile = ""};
    const NamedList<TunnelSettings> tunnels = bench.document().tunnels;
    bench.apply();
    const std::string missing = bench.tunnel("t").lastError;
    EXPECT_THAT(missing, HasSubstr("The SSH password of this tunnel is not known"));
    bench.call([&] { bench.traffic().setTunnelSecret("t", "secret"); });
    EXPECT_NE(bench.tunnel("t").lastError, missing);
    bench.document().tunnels.front().second.disabled = true;
    bench.apply();
    bench.document().tunnels = tunnels;
    bench.apply();
    EXPECT_NE(bench.tunnel("t").lastError, missing) << "kept for one that is only switched off";
    bench.document().tunnels.clear();
    bench.apply();
    bench.document().tunnels = tunnels;
    bench.apply();
    EXPECT_EQ(bench.tunnel("t").lastError, missing);
}

} // namespace

} // namespace veranox
