#pragma once
#include "Service/Net/Backoff.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Tunnels/TunnelRunner.h"

namespace veranox {

/// A tunnel whose target the node dials itself.
class NativeTunnel final : public TunnelRunner {
public:
    /// Engine and conduits must outlive it.
    NativeTunnel(boost::asio::any_io_executor executor, NodeEngine &nodes, Conduits &conduits, TunnelSettings settings);
    NativeTunnel(const NativeTunnel &) = delete;
    NativeTunnel &operator=(const NativeTunnel &) = delete;
    ~NativeTunnel() override;

    void open(SteadyTime now) override;
    void close() override;
    std::optional<SteadyTime> retryAt() const override { return m_retryAt; }
    TunnelStatus status() const override;
    void setSecret(std::string) override { }

private:
    void listen();

    boost::asio::any_io_executor m_executor;
    NodeEngine &m_nodes;
    Conduits &m_conduits;
    TunnelSettings m_settings;
    std::shared_ptr<PortForwarder> m_forwarder; // while it listens
    std::string m_error;
    Backoff m_backoff{std::chrono::seconds(15)};
    std::optional<SteadyTime> m_retryAt;
};

} // namespace veranox
