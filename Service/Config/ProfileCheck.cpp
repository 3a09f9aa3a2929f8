#include "Service/Config/ProfileCheck.h"

#include "Service/Net/LoopbackEndpoint.h"
#include "Service/Text/FieldText.h"
#include "Service/Text/Refusal.h"
#include "Service/Text/Words.h"
#include <algorithm>
#include <boost/asio/ip/address.hpp>
#include <boost/asio/ip/network_v4.hpp>
#include <boost/asio/ip/network_v6.hpp>
#include <map>
#include <optional>
#include <stdexcept>

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr std::size_t longestText = 1024;
constexpr std::size_t longestLabel = 63;
constexpr std::size_t longestHostname = 253;

[[noreturn]] void refuse(const std::string &profile, const std::string &text)
{
    throw Refusal(Refusal::Kind::badInput, "Profile \"" + profile + "\": " + text + ".");
}

std::string shown(const std::string &text)
{
    return "\"" + shortened(printable(text), 80) + "\"";
}

bool isLetterOrDigit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// Letters of any script, as they may stand in an internationalised name, digits, hyphen, underscore, full stop.
bool isSuffixCharacter(char c)
{
    return isLetterOrDigit(c) || c == '-' || c == '_' || c == '.' || static_cast<unsigned char>(c) >= 0x80;
}

void checkTexts(const std::string &name, const ProfileSettings &profile)
{
    const std::pair<std::string, const std::string *> texts[] = {{"DisplayName", &profile.displayName},
        {"Icon", &profile.icon}, {"Color", &profile.color}, {"AuthKeyEnv", &profile.authKeyEnv},
        {"ControlURL", &profile.controlURL}, {"StateDir", &profile.stateDir}, {"Socket", &profile.socket}};
    for (const auto &[key, text] : texts)
        if (const std::optional<std::string> problem = lineProblem(*text, longestText))
            refuse(name, key + " " + *problem);
}

void checkHostname(const std::string &name, const std::string &hostname)
{
    const bool fits = hostname.size() <= longestLabel && !hostname.starts_with('-') && !hostname.ends_with('-')
        && std::ranges::all_of(hostname, [](char c) { return isLetterOrDigit(c) || c == '-'; });
    if (!fits)
        refuse(name, "Hostname must be at most 63 letters, numbers or hyphens, and cannot start or end with a hyphen");
}

/// The suffix as two of them are compared: in lower case and without the full stop in front.
std::string bareSuffix(const std::string &suffix)
{
    return lowered(suffix.starts_with('.') ? suffix.substr(1) : suffix);
}

void checkSuffix(const std::string &name, const std::string &suffix)
{
    const std::string bare = bareSuffix(suffix);
    const bool hasEmptyLabel = bare.empty() || bare.starts_with('.') || bare.ends_with('.') || bare.contains("..");
    if (hasEmptyLabel || bare.size() > longestHostname || !std::ranges::all_of(bare, isSuffixCharacter))
        refuse(name, "the suffix " + shown(suffix) + " is not the end of a host name, such as \".tail1a2b.ts.net\"");
}

/// The range in one spelling, so that two can be compared; nothing for what is none.
std::optional<std::string> addressRange(const std::string &text)
{
    boost::system::error_code failure;
    if (text.contains('/')) {
        if (const auto range = asio::ip::make_network_v4(text, failure); !failure)
            return range.canonical().to_string();
        if (const auto range = asio::ip::make_network_v6(text, failure); !failure)
            return range.canonical().to_string();
        return std::nullopt;
    }
    const auto address = asio::ip::make_address(text, failure);
    return failure ? std::nullopt : std::optional(address.to_string() + (address.is_v4() ? "/32" : "/128"));
}

void checkProxy(const std::string &name, const std::string &key, const std::string &address)
{
    if (address.empty())
        return;
    try {
        parseLoopbackEndpoint(address, 1);
    } catch (const std::invalid_argument &problem) {
        refuse(name, key + " " + problem.what());
    }
}

[[noreturn]] void refuseClaim(
    const std::string &what, const std::string &claimed, const std::string &later, const std::string &earlier)
{
    throw Refusal(Refusal::Kind::conflict,
        "Overlapping " + what + " " + shown(claimed) + ": profile \"" + later + "\" has it, and profile \"" + earlier
            + "\" has it already.");
}

} // namespace

void checkProfiles(const NamedList<ProfileSettings> &profiles)
{
    for (const auto &[name, profile] : profiles) {
        checkTexts(name, profile);
        checkHostname(name, profile.hostname);
        for (const std::string &suffix : profile.suffixes)
            checkSuffix(name, suffix);
        for (const std::string &range : profile.ipRoutes)
            if (!addressRange(range))
                refuse(name, "the IP route " + shown(range) + " is not a range of addresses, such as 10.0.0.0/8");
        checkProxy(name, "HTTPProxy", profile.httpProxy);
        checkProxy(name, "SOCKS5Proxy", profile.socks5Proxy);
    }
}

void checkClaims(const NamedList<ProfileSettings> &profiles)
{
    std::map<std::string, std::string> suffixes;
    std::map<std::string, std::string> ranges;
    for (const auto &[name, profile] : profiles) {
        for (const std::string &suffix : profile.suffixes)
            if (const auto [owner, isNew] = suffixes.emplace(bareSuffix(suffix), name); owner->second != name)
                refuseClaim("suffix", suffix, name, owner->second);
        for (const std::string &range : profile.ipRoutes)
            if (const auto [owner, isNew] = ranges.emplace(addressRange(range).value_or(range), name);
                owner->second != name)
                refuseClaim("IP route", range, name, owner->second);
    }
}

} // namespace veranox
