#include "Service/Config/ConfigCheck.h"
#include "Service/Config/PortPlan.h"
#include "Service/Text/Refusal.h"
#include <functional>
#include <gmock/gmock.h>

namespace veranox {

namespace {

using ::testing::HasSubstr;

/// What is said against a document of two profiles once it is changed; empty when nothing is.
std::string complaintOf(const std::function<void(ConfigDocument &, ProfileSettings &first)> &change)
{
    ConfigDocument document;
    document.profiles = {{"first", {}}, {"second", {}}};
    change(document, document.profiles.front().second);
    try {
        checkConfig(document, 43200);
    } catch (const Refusal &refused) {
        return refused.what();
    }
    return "";
}

std::string suffixComplaint(const std::string &suffix)
{
    return complaintOf([&](ConfigDocument &, ProfileSettings &first) { first.suffixes = {suffix}; });
}

std::string hostnameComplaint(const std::string &hostname)
{
    return complaintOf([&](ConfigDocument &, ProfileSettings &first) { first.hostname = hostname; });
}

std::string baseComplaint(const std::string &base)
{
    return complaintOf(
        [&](ConfigDocument &document, ProfileSettings &) { document.router.profileHostnameBase = base; });
}

TEST(ConfigCheck, SuffixesAreEndsOfHostNames)
{
    const std::string longest(253, 'a');
    for (const std::string &suffix :
        {std::string("a"), std::string(".a"), std::string("a.b_c-d"), longest, "." + longest})
        EXPECT_EQ(suffixComplaint(suffix), "") << suffix;
    for (const std::string &suffix : {std::string(), std::string("."), std::string("..a"), std::string("a."),
             std::string("a..b"), std::string("a/b"), std::string("a b"), longest + "a", "." + longest + "a"})
        EXPECT_THAT(suffixComplaint(suffix), HasSubstr("is not the end of a host name")) << suffix;
}

TEST(ConfigCheck, HostNamesAreLabels)
{
    const std::string longest(63, 'a');
    for (const std::string &name : {std::string("a"), std::string("A-9"), longest})
        EXPECT_EQ(hostnameComplaint(name), "") << name;
    for (const std::string &name : {std::string("-a"), std::string("a-"), std::string("a.b"), longest + "a"})
        EXPECT_THAT(hostnameComplaint(name), HasSubstr("Hostname must be at most 63")) << name;
    for (const std::string &name : {std::string("a"), std::string("a-9"), longest})
        EXPECT_EQ(baseComplaint(name), "") << name;
    for (const std::string &name :
        {std::string(), std::string("A"), std::string("-a"), std::string("a-"), std::string("a.b"), longest + "a"})
        EXPECT_THAT(baseComplaint(name), HasSubstr("ProfileHostnameBase must be 1 to 63")) << name;
}

TEST(ConfigCheck, ProfilesHavePortsAsLongAsThereAreSome)
{
    using Base = std::int64_t RouterSettings::*;
    const auto complaint = [](Base base, std::int64_t port) {
        return complaintOf([&](ConfigDocument &document, ProfileSettings &) { document.router.*base = port; });
    };
    const std::pair<Base, std::int64_t> last[] = {{&RouterSettings::profileHTTPProxyBase, 65533},
        {&RouterSettings::profileSOCKS5ProxyBase, 65533}, {&RouterSettings::profileUDPPortBase, 65534}};
    for (const auto &[base, port] : last) {
        EXPECT_EQ(complaint(base, port), "");
        EXPECT_THAT(complaint(base, port + 1), HasSubstr("the ports of profile \"second\" would lie beyond 65535"));
    }
    EXPECT_EQ(complaint(&RouterSettings::profileUDPPortBase, 0), "") << "the system picks";
}

TEST(ConfigCheck, AnAddressIsARangeOfItsOwn)
{
    const auto complaint = [](const std::string &of, const std::string &and_) {
        return complaintOf([&](ConfigDocument &document, ProfileSettings &first) {
            first.ipRoutes = {of};
            document.profiles.back().second.ipRoutes = {and_};
        });
    };
    EXPECT_THAT(complaint("10.1.2.3", "10.1.2.3/32"), HasSubstr("Overlapping IP route"));
    EXPECT_THAT(complaint("fd00::1", "fd00:0::1/128"), HasSubstr("Overlapping IP route"));
    EXPECT_EQ(complaint("fd00::1", "fd00::1/32"), "");
    EXPECT_EQ(complaint("10.1.2.3", "10.1.2.0/24"), "") << "the narrower one decides";
}

TEST(PortPlan, PortsAreReadFromAddresses)
{
    EXPECT_EQ(portOf("127.0.0.1:1"), 1);
    EXPECT_EQ(portOf("[::1]:65535"), 65535);
    for (const std::string_view address :
        {"", "8080", ":", "a:", "a:0", "a:-1", "a:65536", "a:8x", "a:99999999999999999999"})
        EXPECT_EQ(portOf(address), 0) << address;
}

} // namespace

} // namespace veranox
