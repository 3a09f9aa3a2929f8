#include "MenuBar/Popover/VeranoxMenuRow.h"
#include "API/Values/VeranoxRecordClass.h"
#include "Controls/VeranoxRuntimeStateIndicator.h"

using namespace Qt::StringLiterals;

namespace {

QString orElse(const QString &text, const QString &instead)
{
    return text.isEmpty() ? instead : text;
}

// What tunnels and publications show alike.
template <class Record> VeranoxMenuRow rowOf(const Record &record, const VeranoxMenuRow::Surroundings &surroundings)
{
    const VeranoxRuntimeStateIndicator indicator(record);
    VeranoxMenuRow row;
    row.name = record.name;
    row.title = orElse(record.displayName, record.name);
    row.accent = surroundings.accent;
    row.target = record.target;
    row.mark = static_cast<int>(indicator.mark());
    row.tone = indicator.color();
    row.stateText = indicator.help();
    row.isOn = !record.disabled;
    row.canSwitch = surroundings.isEditable;
    row.canRetry = needsAttention(record);
    row.retryEnabled = surroundings.isEditable && !surroundings.activity.isRetrying;
    row.justCopied = surroundings.activity.justCopied;
    row.isRetrying = surroundings.activity.isRetrying;
    row.isSwitching = surroundings.activity.isSwitching;
    return row;
}

QString routeOf(const VeranoxTunnel &tunnel)
{
    const bool hasBastion = tunnel.mode == "ssh"_L1 && !tunnel.sshBastion.isEmpty();
    return hasBastion ? tunnel.target + u" via "_s + tunnel.sshBastion : tunnel.target;
}

void block(VeranoxMenuRow &row)
{
    row.isBlocked = true;
    row.address = u"Blocked — Funnel isn't in this version"_s;
    row.addressHelp =
        u"Publishing to the public internet with Funnel isn't available in this version. Set this publication's "
        "reach back to the tailnet, or remove it."_s;
    row.toggleHelp = u"Blocked — Funnel isn't available in this version"_s;
    row.stateHelp = row.stateText;
    row.canSwitch = false;
}

} // namespace

VeranoxMenuRow VeranoxMenuRow::of(const VeranoxTunnel &tunnel, const Surroundings &surroundings)
{
    VeranoxMenuRow row = rowOf(tunnel, surroundings);
    row.target = routeOf(tunnel);
    row.mode = tunnel.mode;
    row.address = tunnel.listen;
    row.canCopy = true;
    row.stateHelp = orElse(tunnel.lastError, row.stateText);
    row.toggleHelp = row.isOn ? u"Stop this tunnel"_s : u"Start this tunnel"_s;
    return row;
}

VeranoxMenuRow VeranoxMenuRow::of(const VeranoxPublication &publication, const Surroundings &surroundings)
{
    VeranoxMenuRow row = rowOf(publication, surroundings);
    if (publication.isUnreachable() && publication.lastError.isEmpty() && !publication.disabled)
        row.stateText =
            publication.reachability.help() + u" Open Settings → Publications and choose Make reachable… to fix it."_s;
    row.address = publication.address;
    row.addressHelp = publication.address;
    row.canCopy = !publication.address.isEmpty();
    row.stateHelp = orElse(publication.lastError, row.stateText);
    row.toggleHelp = row.isOn ? u"Stop this publication"_s : u"Start this publication"_s;
    if (publication.state == "blocked"_L1)
        block(row);
    return row;
}
