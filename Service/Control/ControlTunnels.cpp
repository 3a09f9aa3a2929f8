#include "Service/Control/ControlApi.h"
#include "Service/Control/NamedChanges.h"
#include "Service/Control/TunnelSave.h"
#include "Service/Text/FieldText.h"
#include "Service/Text/Refusal.h"

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr std::string_view kind = "tunnel";

} // namespace

asio::awaitable<ControlAnswer> ControlApi::saveTunnel(Call call)
{
    SaveRequest<TunnelSettings> save = readTunnelSave(call.request.body);
    const SaveTurns::Turn turn = co_await m_turns.take();
    co_await commit(withTunnel(m_parts.config.document(), std::move(save), m_parts.port));
    co_return tunnels(call);
}

asio::awaitable<ControlAnswer> ControlApi::deleteTunnel(Call call)
{
    const SaveTurns::Turn turn = co_await m_turns.take();
    ConfigDocument next = m_parts.config.document();
    requireNamed(kind, next.tunnels, call.name);
    std::erase_if(next.tunnels, [&](const auto &tunnel) { return tunnel.first == call.name; });
    co_await commit(std::move(next));
    co_return tunnels(call);
}

asio::awaitable<ControlAnswer> ControlApi::startTunnel(Call call)
{
    return switchTunnel(std::move(call), false);
}

asio::awaitable<ControlAnswer> ControlApi::stopTunnel(Call call)
{
    return switchTunnel(std::move(call), true);
}

/// One that is switched on already and broke is tried again; one that fares well keeps its connections.
asio::awaitable<ControlAnswer> ControlApi::switchTunnel(Call call, bool isDisabled)
{
    const SaveTurns::Turn turn = co_await m_turns.take();
    ConfigDocument next = m_parts.config.document();
    TunnelSettings &tunnel = requireNamed(kind, next.tunnels, call.name);
    if (tunnel.disabled != isDisabled) {
        tunnel.disabled = isDisabled;
        co_await commit(std::move(next));
    } else if (m_parts.traffic.tunnelStatus(call.name).state == "error") {
        m_parts.traffic.restartTunnel(call.name);
    }
    co_return tunnels(call);
}

ControlAnswer ControlApi::restartTunnel(const Call &call)
{
    ConfigDocument document = m_parts.config.document();
    if (requireNamed(kind, document.tunnels, call.name).disabled)
        throw Refusal(
            Refusal::Kind::conflict, "The tunnel " + shownName(call.name) + " is switched off; switch it on instead.");
    m_parts.traffic.restartTunnel(call.name);
    return tunnels(call);
}

ControlAnswer ControlApi::setTunnelSecret(const Call &call)
{
    constexpr std::size_t longestPassword = 1024;
    std::string password = readSecret(call.request.body);
    ConfigDocument document = m_parts.config.document();
    const TunnelSettings &tunnel = requireNamed(kind, document.tunnels, call.name);
    if (tunnel.mode != "ssh" || !tunnel.ssh || tunnel.ssh->auth != "password")
        throw Refusal(
            Refusal::Kind::conflict, "The tunnel " + shownName(call.name) + " does not sign in with a password.");
    if (const std::optional<std::string> problem = lineProblem(password, longestPassword))
        throw Refusal(Refusal::Kind::badInput, "The password " + *problem + ".");
    m_parts.traffic.setTunnelSecret(call.name, std::move(password));
    return tunnels(call);
}

} // namespace veranox
