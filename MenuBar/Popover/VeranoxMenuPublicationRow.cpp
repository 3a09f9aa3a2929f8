#include "MenuBar/Popover/VeranoxMenuPublicationRow.h"
#include "MenuBar/Popover/VeranoxIndicatorTone.h"

using namespace Qt::StringLiterals;

namespace {

QString stateTextOf(const VeranoxPublication &publication)
{
    if (publication.isUnreachable() && publication.lastError.isEmpty() && !publication.disabled)
        return publication.reachability.help()
            + u" Open Settings → Publications and choose Make reachable… to fix it."_s;
    return VeranoxRuntimeStateIndicator(publication).help();
}

QString toggleHelpOf(const VeranoxMenuPublicationRow &row)
{
    if (row.isBlocked)
        return u"Blocked — Funnel isn't available in this version"_s;
    return row.isOn ? u"Stop this publication"_s : u"Start this publication"_s;
}

} // namespace

VeranoxMenuPublicationRow VeranoxMenuPublicationRow::of(const VeranoxPublication &publication, const QString &accent,
    bool isEditable, const VeranoxMenuRowActivity &activity)
{
    const VeranoxRuntimeStateIndicator indicator(publication);
    VeranoxMenuPublicationRow row;
    row.name = publication.name;
    row.title = publication.displayName.isEmpty() ? publication.name : publication.displayName;
    row.accent = accent;
    row.target = publication.target;
    row.isBlocked = publication.state == "blocked"_L1;
    row.address = row.isBlocked ? u"Blocked — Funnel isn't in this version"_s : publication.address;
    row.addressHelp = row.isBlocked
        ? u"Publishing to the public internet with Funnel isn't available in this version. Set this publication's "
          "reach back to the tailnet, or remove it."_s
        : publication.address;
    row.mark = int(indicator.mark());
    row.tone = toneOf(indicator.color());
    row.stateText = stateTextOf(publication);
    row.isOn = !publication.disabled;
    row.canSwitch = !row.isBlocked && isEditable;
    row.toggleHelp = toggleHelpOf(row);
    row.canRetry = !publication.disabled && !row.isBlocked && publication.hasError();
    row.retryEnabled = isEditable && !activity.isRetrying;
    row.justCopied = activity.justCopied;
    row.isRetrying = activity.isRetrying;
    row.isSwitching = activity.isSwitching;
    return row;
}
