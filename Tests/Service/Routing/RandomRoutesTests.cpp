#include "Service/Routing/RouteTable.h"
#include "Service/Text/Words.h"
#include <boost/asio/ip/network_v4.hpp>
#include <boost/asio/ip/network_v6.hpp>
#include <gtest/gtest.h>
#include <random>

namespace veranox {

namespace {

namespace ip = boost::asio::ip;

/// Makes names and addresses that often have to do with each other: few labels, few bits.
class Dice {
public:
    explicit Dice(unsigned seed) : m_random(seed) { }

    unsigned below(unsigned bound) { return std::uniform_int_distribution<unsigned>(0, bound - 1)(m_random); }
    std::string name()
    {
        static const std::vector<std::string> labels{"a", "b", "A", "ab", ""};
        std::string text = below(2) == 0 ? "" : ".";
        for (unsigned i = 0, count = 1 + below(4); i < count; ++i)
            text += (i > 0 ? "." : "") + labels[below(20) == 0 ? 4 : below(4)];
        return text;
    }
    std::string address4() { return "10." + octet() + "." + octet() + "." + octet(); }
    std::string address6() { return "fd00::" + octet() + ":" + octet(); }
    std::string range()
    {
        static const std::vector<std::string> wrong{"", "nonsense", "10.0.0.0/33", "fd00::/129", "/8"};
        switch (below(5)) {
        case 0:
            return address4() + "/" + std::to_string(below(33));
        case 1:
            return address6() + "/" + std::to_string(below(129));
        case 2:
            return address4();
        case 3:
            return address6();
        default:
            return wrong[below(static_cast<unsigned>(wrong.size()))];
        }
    }
    std::string host()
    {
        const std::string text = below(3) == 0 ? address4() : below(2) == 0 ? address6() : name();
        return below(8) == 0 ? text + "." : text;
    }
    ConfigDocument document()
    {
        ConfigDocument document;
        for (unsigned i = 0, count = below(5); i < count; ++i) {
            ProfileSettings profile;
            profile.matchRoot = below(2) == 0;
            for (unsigned s = below(5); s > 0; --s)
                profile.suffixes.push_back(name());
            for (unsigned r = below(5); r > 0; --r)
                profile.ipRoutes.push_back(range());
            document.profiles.emplace_back("p" + std::to_string(i), std::move(profile));
        }
        return document;
    }

private:
    std::string octet() { return std::to_string(below(4)); }

    std::mt19937 m_random;
};

/// How many bits of the range's text the address shares; nothing when it lies outside.
std::optional<int> sharedBits(const std::string &range, const ip::address &address)
{
    boost::system::error_code failure;
    const std::string whole = range.contains('/') ? range : range + (range.contains(':') ? "/128" : "/32");
    if (address.is_v4()) {
        const auto network = ip::make_network_v4(whole, failure);
        if (failure || ip::network_v4(address.to_v4(), network.prefix_length()).canonical() != network.canonical())
            return std::nullopt;
        return network.prefix_length();
    }
    const auto network = ip::make_network_v6(whole, failure);
    if (failure || ip::network_v6(address.to_v6(), network.prefix_length()).canonical() != network.canonical())
        return std::nullopt;
    return network.prefix_length();
}

/// The rules read one after the other, as a person would.
std::optional<PathRoute> naiveRoute(const ConfigDocument &document, std::string host)
{
    if (host.ends_with('.'))
        host.pop_back();
    host = lowered(host);
    boost::system::error_code failure;
    const ip::address address = ip::make_address(host, failure);
    const bool isName = failure.failed();
    std::optional<PathRoute> best;
    int bestBits = -1;
    for (std::size_t i = 0; i < document.profiles.size(); ++i) {
        const ProfileSettings &profile = document.profiles[i].second;
        for (const std::string &written : profile.suffixes) {
            const std::string suffix = lowered(written);
            const std::string dotted = suffix.starts_with('.') ? suffix : "." + suffix;
            const bool owns = host.ends_with(dotted) || (profile.matchRoot && "." + host == dotted);
            if (isName && suffix.size() > 1 && owns && (!best || suffix.size() > best->suffix.size()))
                best = PathRoute{i, suffix, ""};
        }
        for (const std::string &range : profile.ipRoutes)
            if (const auto bits = isName ? std::nullopt : sharedBits(range, address); bits && *bits > bestBits) {
                best = PathRoute{i, "", range};
                bestBits = *bits;
            }
    }
    return best;
}

TEST(RandomRoutes, TheTableAnswersAsTheRulesRead)
{
    Dice dice(20250301);
    int owned = 0;
    for (int i = 0; i < 2000; ++i) {
        const auto document = std::make_shared<const ConfigDocument>(dice.document());
        const RouteTable table(document);
        for (int question = 0; question < 20; ++question) {
            const std::string host = dice.host();
            const std::optional<PathRoute> expected = naiveRoute(*document, host);
            owned += expected ? 1 : 0;
            ASSERT_EQ(table.find(host), expected) << "document " << i << ", host \"" << host << "\"";
        }
    }
    EXPECT_GT(owned, 5000) << "the questions must have to do with the rules";
}

} // namespace

} // namespace veranox
