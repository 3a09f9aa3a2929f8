#pragma once
#include "Service/Nodes/NodeEngine.h"
#include "Service/Nodes/Traffic.h"

namespace veranox {

/// Carries the connections through the nodes of an engine.
class NodeTraffic final : public Traffic {
public:
    /// The engine must outlive it.
    explicit NodeTraffic(NodeEngine &nodes);

    void apply(const ConfigDocument &document) override;
    void nodesChanged() override;
    TunnelStatus tunnelStatus(const std::string &name) const override;
    PublicationStatus publicationStatus(const std::string &name) const override;
    void restartTunnel(const std::string &name) override;
    void restartPublication(const std::string &name) override;
    void setTunnelSecret(const std::string &name, std::string password) override;
    boost::asio::awaitable<boost::json::object> pathReport(PathQuestion question) override;
    void stop() override;

private:
    NodeEngine &m_nodes;
    ConfigDocument m_document;
};

} // namespace veranox
