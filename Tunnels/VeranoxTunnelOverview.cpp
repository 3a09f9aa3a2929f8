#include "Tunnels/VeranoxTunnelOverview.h"

VeranoxTunnelOverview::VeranoxTunnelOverview(const QList<VeranoxTunnel> &tunnels)
    : VeranoxRecordOverview(tunnels, std::ranges::count(tunnels, true, &VeranoxTunnel::disabled))
{
}
