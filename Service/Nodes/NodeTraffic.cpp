#include "Service/Nodes/NodeTraffic.h"

#include "Service/Profiles/ProfileRecord.h"

namespace veranox {

NodeTraffic::NodeTraffic(NodeEngine &nodes) : m_nodes(nodes) { }

void NodeTraffic::apply(const ConfigDocument &document)
{
    m_document = document;
}

void NodeTraffic::nodesChanged() { }

TunnelStatus NodeTraffic::tunnelStatus(const std::string &name) const
{
    const TunnelSettings *settings = findNamed(m_document.tunnels, name);
    return settings ? m_nodes.tunnelStatus(name, *settings) : TunnelStatus{};
}

PublicationStatus NodeTraffic::publicationStatus(const std::string &name) const
{
    const PublicationSettings *settings = findNamed(m_document.publications, name);
    if (!settings)
        return {};
    return m_nodes.publicationStatus(name, *settings, nodeHostname(m_document, settings->profile));
}

void NodeTraffic::restartTunnel(const std::string &) { }

void NodeTraffic::restartPublication(const std::string &) { }

void NodeTraffic::setTunnelSecret(const std::string &, std::string) { }

boost::asio::awaitable<boost::json::object> NodeTraffic::pathReport(PathQuestion question)
{
    co_return boost::json::object{{"profile", ""}, {"target", question.target},
        {"summary", "This version of the service does not try paths yet."}};
}

void NodeTraffic::stop() { }

} // namespace veranox
