#pragma once
#include "Service/Config/IndexedConfig.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Publications/PublicationRunner.h"
#include "Service/Routing/RouteTable.h"
#include "Service/Time/TimeSource.h"
#include "Service/Traffic/ForwardingGate.h"
#include "Service/Traffic/Traffic.h"
#include "Service/Tunnels/SshCommand.h"
#include "Service/Tunnels/TunnelRunner.h"
#include "Service/Tunnels/TunnelSurroundings.h"
#include <boost/asio/steady_timer.hpp>
#include <map>
#include <memory>

namespace veranox {

/// Carries the connections through the nodes of an engine. Wakes when something can change and at no other time.
class NodeTraffic final : public Traffic {
public:
    /// Engine, gate and time must outlive it.
    NodeTraffic(boost::asio::any_io_executor executor, NodeEngine &nodes, const ForwardingGate &gate,
        const TimeSource &time, SshPlaces sshPlaces);
    NodeTraffic(const NodeTraffic &) = delete;
    NodeTraffic &operator=(const NodeTraffic &) = delete;
    ~NodeTraffic() override;

    void apply(std::shared_ptr<const ConfigDocument> document) override;
    void nodesChanged() override;
    TunnelStatus tunnelStatus(const std::string &name) const override;
    PublicationStatus publicationStatus(const std::string &name) const override;
    void restartTunnel(const std::string &name) override;
    void restartPublication(const std::string &name) override;
    void setTunnelSecret(const std::string &name, std::string password) override;
    boost::asio::awaitable<boost::json::object> pathReport(PathQuestion question) override;
    /// Ends within half a second, whatever its connections wait for.
    void stop() override;

    /// How often there was no room for a connection since the service began.
    Budget::Strain strain() const { return m_budget.strain(); }
    /// Called, on the executor, some time after there was no room for a connection.
    void setStrained(std::function<void()> strained) { m_strained = std::move(strained); }

private:
    void dropWhatChanged(const IndexedConfig &next);
    void addWhatIsNew();
    std::unique_ptr<TunnelRunner> makeTunnel(const std::string &name, const TunnelSettings &settings);
    TunnelStatus nodeTunnelStatus(const std::string &name, const TunnelSettings &settings) const;
    PublicationStatus nodePublicationStatus(const std::string &name, const PublicationSettings &settings) const;
    /// Opens what the nodes let be and closes the rest, then waits for the next moment that matters.
    void look();
    void lookAtPublications(SteadyTime now);
    void lookAtTunnels(SteadyTime now);
    void awaitNextMoment();
    void noteStrain();
    TunnelSurroundings tunnelSurroundings();

    boost::asio::any_io_executor m_executor;
    NodeEngine &m_nodes;
    const ForwardingGate &m_gate;
    const TimeSource &m_time;
    SshPlaces m_sshPlaces;
    std::function<void()> m_strained;
    std::atomic<bool> m_isStrainTold = true; // all that there is to tell has been told, or will be
    Budget m_budget;
    TrafficPool m_pool;
    PortInquiry m_ports;
    std::shared_ptr<const IndexedConfig> m_config;
    std::shared_ptr<const RouteTable> m_routes;
    std::map<std::string, std::string> m_secrets; // passwords by the names of tunnels
    std::map<std::string, std::unique_ptr<TunnelRunner>> m_tunnels;
    std::map<std::string, std::unique_ptr<PublicationRunner>> m_publications;
    boost::asio::steady_timer m_timer;
    std::shared_ptr<bool> m_isAlive = std::make_shared<bool>(true); // goes with it, for whoever posts to it
    bool m_isStopped = false;
};

} // namespace veranox
