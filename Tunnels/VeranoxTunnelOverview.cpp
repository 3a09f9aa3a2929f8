#include "Tunnels/VeranoxTunnelOverview.h"
#include "Profiles/VeranoxDraftText.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool needsAttention(const VeranoxTunnel &tunnel)
{
    return !tunnel.disabled && (tunnel.state == "error"_L1 || !tunnel.lastError.isEmpty());
}

} // namespace

VeranoxTunnelOverview::VeranoxTunnelOverview(const QList<VeranoxTunnel> &tunnels)
    : totalCount(tunnels.size()),
      disabledCount(std::ranges::count(tunnels, true, &VeranoxTunnel::disabled)),
      attentionCount(std::ranges::count_if(tunnels, needsAttention))
{
    enabledCount = totalCount - disabledCount;
}

QString VeranoxTunnelOverview::statusSummary() const
{
    return VeranoxDraftText::enabledSummary(enabledCount, disabledCount);
}

std::optional<QString> VeranoxTunnelOverview::attentionSummary() const
{
    return VeranoxDraftText::attentionSummary(attentionCount);
}
