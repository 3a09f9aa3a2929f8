#include "Service/Net/Relay.h"

#include <algorithm>
#include <utility>

namespace veranox {

Relay::Relay(Owner &owner, Turns &turns, Parts parts)
    : m_owner(owner),
      m_toTarget(*this, turns, parts.client, parts.target, std::move(parts.toTarget)),
      m_toClient(*this, turns, parts.target, parts.client, std::move(parts.toClient))
{
}

void Relay::start()
{
    m_toTarget.start();
    m_toClient.start();
}

void Relay::stop()
{
    m_toTarget.stop();
    m_toClient.stop();
}

std::chrono::steady_clock::time_point Relay::lastMoved() const
{
    return std::max(m_toTarget.lastMoved(), m_toClient.lastMoved());
}

void Relay::ended(RelayHalf &)
{
    if (isHalfClosed()) {
        m_owner.halfEnded();
        return;
    }
    stop();
    m_owner.relayEnded(CloseReason::ended);
}

void Relay::failed(RelayHalf &half, RelayHalf::Failure failure)
{
    stop();
    if (failure == RelayHalf::Failure::inside)
        return m_owner.relayEnded(CloseReason::failed);
    const bool isOfClient = (failure == RelayHalf::Failure::source) == (&half == &m_toTarget);
    m_owner.relayEnded(isOfClient ? CloseReason::resetByClient : CloseReason::resetByTarget);
}

} // namespace veranox
