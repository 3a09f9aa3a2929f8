#pragma once
#include "Service/Net/Backoff.h"
#include "Service/Tunnels/SshSession.h"
#include "Service/Tunnels/TunnelDoor.h"
#include "Service/Tunnels/TunnelRunner.h"

namespace veranox {

/// A tunnel whose target is dialled from a bastion, over a background connection of ssh that is begun anew whenever it
/// ends: after a second, then twice as long each time, at most a minute.
class SshTunnel final : public TunnelRunner {
public:
    /// The places must outlive it.
    SshTunnel(TunnelSurroundings around, const SshPlaces &places, TunnelSettings settings, std::string password);
    SshTunnel(const SshTunnel &) = delete;
    SshTunnel &operator=(const SshTunnel &) = delete;
    ~SshTunnel() override;

    void open(SteadyTime now) override;
    void close() override;
    std::optional<SteadyTime> retryAt() const override { return m_retryAt; }
    TunnelStatus status() const override;
    void setSecret(std::string password) override;

private:
    void begin();
    void ended(const std::string &complaint);
    void listen();
    void fail(SteadyTime now, std::string problem);

    TunnelSurroundings m_around;
    const SshPlaces &m_places;
    TunnelSettings m_settings;
    std::string m_password;
    std::shared_ptr<SshSession> m_session; // while ssh runs
    SteadyTime m_upSince;
    std::string m_error;
    Backoff m_backoff{std::chrono::seconds(60)};
    std::optional<SteadyTime> m_retryAt;
    TunnelDoor m_door; // open while ssh is connected
};

} // namespace veranox
