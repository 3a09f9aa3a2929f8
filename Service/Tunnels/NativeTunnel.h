#pragma once
#include "Service/Net/Backoff.h"
#include "Service/Tunnels/TunnelDoor.h"
#include "Service/Tunnels/TunnelRunner.h"

namespace veranox {

/// A tunnel whose target the node dials itself.
class NativeTunnel final : public TunnelRunner {
public:
    NativeTunnel(TunnelSurroundings around, TunnelSettings settings);
    NativeTunnel(const NativeTunnel &) = delete;
    NativeTunnel &operator=(const NativeTunnel &) = delete;
    ~NativeTunnel() override = default;

    void open(SteadyTime now) override;
    void close() override;
    std::optional<SteadyTime> retryAt() const override { return m_retryAt; }
    TunnelStatus status() const override;
    void setSecret(std::string) override { }

private:
    void listen();
    void fail(SteadyTime now, std::string problem);
    void obstructed(const PortObstacle &obstacle);

    TunnelSurroundings m_around;
    TunnelSettings m_settings;
    std::string m_error;
    bool m_isObstructed = false; // what is in the way of its address has been told
    unsigned m_quickAttempts = 0; // at an address that is free soon
    Backoff m_backoff{std::chrono::seconds(15)};
    std::optional<SteadyTime> m_retryAt;
    TunnelDoor m_door;
};

} // namespace veranox
