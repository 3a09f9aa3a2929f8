#include "Service/Tunnels/TunnelDoor.h"

#include "Service/Net/PortListener.h"

namespace veranox {

namespace asio = boost::asio;

TunnelDoor::TunnelDoor(const TunnelSurroundings &around, std::string address, Events events)
    : m_around(around),
      m_address(std::move(address)),
      m_events(std::move(events))
{
}

void TunnelDoor::open(Route route)
{
    m_question.reset();
    const LoopbackEndpoint local = parseLoopbackEndpoint(m_address, 1);
    const Listener::Surroundings &forwarding = m_around.forwarding;
    try {
        StreamAcceptor acceptor =
            openListener(forwarding.pool.leastLoaded().executor(), {asio::ip::make_address(local.host), local.port});
        m_listener = std::make_shared<Listener>(forwarding, std::move(acceptor), std::move(route),
            [this](const Attempts &attempts) { m_events.attempted(attempts.problem); });
        m_listener->start();
    } catch (const AddressInUse &) {
        m_question = std::make_shared<PortInquiry::Answer>(m_events.obstructed);
        m_around.ports.ask(local, m_question);
        throw;
    }
}

void TunnelDoor::close()
{
    m_question.reset();
    if (m_listener)
        m_listener->stop();
    m_listener.reset();
}

} // namespace veranox
