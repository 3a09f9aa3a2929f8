#include "Service/Control/RequestGuard.h"

#include "Service/Text/Words.h"
#include <algorithm>
#include <array>

namespace veranox {

namespace {

constexpr std::array<std::string_view, 3> loopbackNames{"127.0.0.1", "localhost", "[::1]"};
constexpr std::uint16_t httpPort = 80;

/// What a browser says when its user typed the address, or when the page is our own; programs say nothing. A page from
/// another port of this computer, as it comes through a tunnel, is "same-site" and none of ours.
bool isOurSite(const std::string &site)
{
    return site == "none" || site == "same-origin";
}

ControlAnswer closing(ControlAnswer answer)
{
    answer.then = ControlAnswer::Then::closeConnection;
    return answer;
}

} // namespace

RequestGuard::RequestGuard(ControlToken token, std::uint16_t port) : m_token(std::move(token)), m_port(port) { }

bool RequestGuard::isOurHost(const std::string &host) const
{
    const std::string given = lowered(host);
    return std::ranges::any_of(loopbackNames, [&](std::string_view name) {
        const bool portGoesWithoutSaying = m_port == httpPort && given == name;
        return portGoesWithoutSaying || given == std::string(name) + ":" + std::to_string(m_port);
    });
}

bool RequestGuard::isOurOrigin(const std::string &origin) const
{
    constexpr std::string_view scheme = "http://";
    return lowered(origin).starts_with(scheme) && isOurHost(origin.substr(scheme.size()));
}

std::optional<ControlAnswer> RequestGuard::checkSender(const ControlRequest &request) const
{
    constexpr unsigned misdirected = 421;
    constexpr unsigned badRequest = 400;
    if (request.hosts.size() != 1 || !isOurHost(request.hosts.front()))
        return closing(refusal(misdirected,
            "The Host header must be 127.0.0.1, localhost or [::1] with the port of this service, exactly once."));
    if (!request.isRead() && !request.origins.empty())
        return closing(
            refusal(badRequest, "A request with an Origin header, as web pages send it, may change nothing."));
    if (!std::ranges::all_of(request.origins, [this](const std::string &origin) { return isOurOrigin(origin); }))
        return closing(refusal(badRequest, "The Origin header names a web page that is not of this service."));
    if (!std::ranges::all_of(request.sites, isOurSite))
        return closing(
            refusal(badRequest, "The Sec-Fetch-Site header tells of a web page that is not of this service."));
    return std::nullopt;
}

std::optional<ControlAnswer> RequestGuard::checkToken(const ControlRequest &request) const
{
    constexpr unsigned forbidden = 403;
    if (request.isRead() || (request.tokens.size() == 1 && m_token.matches(request.tokens.front())))
        return std::nullopt;
    return refusal(forbidden, "The control token is missing or wrong; read it again from the file control.token.");
}

} // namespace veranox
