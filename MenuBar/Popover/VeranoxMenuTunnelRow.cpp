#include "MenuBar/Popover/VeranoxMenuTunnelRow.h"
#include "MenuBar/Popover/VeranoxIndicatorTone.h"

using namespace Qt::StringLiterals;

namespace {

QString routeOf(const VeranoxTunnel &tunnel)
{
    const bool hasBastion = tunnel.mode == "ssh"_L1 && !tunnel.sshBastion.isEmpty();
    return hasBastion ? tunnel.target + u" via "_s + tunnel.sshBastion : tunnel.target;
}

} // namespace

VeranoxMenuTunnelRow VeranoxMenuTunnelRow::of(
    const VeranoxTunnel &tunnel, const QString &accent, const VeranoxMenuRowActivity &activity)
{
    const VeranoxRuntimeStateIndicator indicator(tunnel);
    VeranoxMenuTunnelRow row;
    row.name = tunnel.name;
    row.title = tunnel.displayName.isEmpty() ? tunnel.name : tunnel.displayName;
    row.accent = accent;
    row.target = routeOf(tunnel);
    row.mode = tunnel.mode;
    row.endpoint = tunnel.listen;
    row.mark = int(indicator.mark());
    row.tone = toneOf(indicator.color());
    row.stateText = indicator.help();
    row.isOn = !tunnel.disabled;
    row.toggleHelp = row.isOn ? u"Stop this tunnel"_s : u"Start this tunnel"_s;
    row.canRetry = !tunnel.disabled && (tunnel.state == "error"_L1 || !tunnel.lastError.isEmpty());
    row.justCopied = activity.justCopied;
    row.isRetrying = activity.isRetrying;
    row.isSwitching = activity.isSwitching;
    return row;
}
