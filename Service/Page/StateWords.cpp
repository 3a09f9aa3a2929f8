#include "Service/Page/StateWords.h"

#include <utility>

namespace veranox {

namespace {

std::string orElse(const std::string &text, const char *otherwise)
{
    return text.empty() ? otherwise : text;
}

std::string connections(std::int64_t count)
{
    if (count <= 0)
        return "";
    return std::to_string(count) + (count == 1 ? " connection" : " connections");
}

std::string devices(std::int64_t count)
{
    return std::to_string(count) + (count == 1 ? " device" : " devices");
}

/// Who may connect to what is served.
std::string audience(const Reachability &reachability)
{
    if (reachability.state == "unknown")
        return orElse(reachability.detail, "Who may connect is not known.");
    if (reachability.state != "reachable")
        return "";
    return reachability.everyone ? "Open to every device of the tailnet"
                                 : "Open to " + devices(reachability.peers) + " of the tailnet";
}

std::string closedDoor(const Reachability &reachability)
{
    std::string text = "The tailnet's access policy lets no other device connect.";
    if (!reachability.detail.empty())
        text += " " + reachability.detail;
    if (reachability.hint)
        text += " Allow it at " + reachability.hint->policyURL + ".";
    return text;
}

std::string joined(std::string first, const std::string &second)
{
    if (!first.empty() && !second.empty())
        first += " · ";
    return first + second;
}

/// What tunnels and publications have in common.
StateWords runnerWords(const std::string &state, const std::string &error)
{
    if (state == "starting")
        return {Tone::busy, "Starting", error};
    if (state == "error")
        return {Tone::failed, "Error", orElse(error, "There is no word on why.")};
    if (state == "stopped" || state.empty())
        return {Tone::off, "Stopped", error};
    return {Tone::off, state, error};
}

} // namespace

StateWords wordsFor(const NodeStatus &status)
{
    if (status.ok)
        return {Tone::good, "Running", ""};
    if (status.backendState == "NeedsLogin")
        return {Tone::attention, "Needs login", orElse(status.error, "Sign in to the tailnet in Veranox.")};
    if (status.backendState == "NeedsMachineAuth")
        return {Tone::attention, "Needs approval",
            orElse(status.error, "An admin of the tailnet has to approve this computer.")};
    if (status.backendState == "Stopped")
        return {Tone::failed, "Stopped", orElse(status.error, "There is no word on why.")};
    return {Tone::busy, "Starting", status.error};
}

StateWords wordsFor(const TunnelSettings &settings, const TunnelStatus &status)
{
    if (settings.disabled)
        return {Tone::off, "Disabled", ""};
    if (status.state == "listening")
        return {Tone::good, "Listening", joined(connections(status.activeConns), status.lastError)};
    return runnerWords(status.state, status.lastError);
}

StateWords wordsFor(const PublicationSettings &settings, const PublicationStatus &status)
{
    if (status.state == "blocked")
        return {Tone::off, "Not published", "Veranox does not serve to the whole internet."};
    if (settings.disabled)
        return {Tone::off, "Disabled", ""};
    if (status.state == "listening" && status.reachability.state == "unreachable")
        return {Tone::attention, "Unreachable", closedDoor(status.reachability)};
    if (status.state == "listening")
        return {Tone::good, "Published",
            joined(joined(audience(status.reachability), connections(status.activeConns)), status.lastError)};
    return runnerWords(status.state, status.lastError);
}

} // namespace veranox
