#pragma once
#include "Service/Net/Backoff.h"
#include "Service/Time/TimeSource.h"
#include "Service/Tunnels/SshSession.h"
#include "Service/Tunnels/TunnelRunner.h"

namespace veranox {

/// A tunnel whose target is dialled from a bastion, over a background connection of ssh that is begun anew whenever it
/// ends: after a second, then twice as long each time, at most a minute.
class SshTunnel final : public TunnelRunner {
public:
    struct Surroundings {
        boost::asio::any_io_executor executor;
        NodeEngine &nodes;
        Conduits &conduits;
        const TimeSource &time;
        const SshPlaces &places;
        std::function<void()> changed; // called when the next attempt has been set
    };

    SshTunnel(Surroundings surroundings, TunnelSettings settings, std::string password);
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

    Surroundings m_around;
    TunnelSettings m_settings;
    std::string m_password;
    std::shared_ptr<SshSession> m_session; // while ssh runs
    std::shared_ptr<PortForwarder> m_forwarder; // while ssh is connected
    SteadyTime m_upSince;
    std::string m_error;
    Backoff m_backoff{std::chrono::seconds(60)};
    std::optional<SteadyTime> m_retryAt;
};

} // namespace veranox
