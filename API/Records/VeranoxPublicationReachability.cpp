#include "API/Records/VeranoxPublicationReachability.h"

using namespace Qt::StringLiterals;

std::optional<QUrl> VeranoxPublicationPolicyHint::policyURL() const
{
    const QUrl url(policyURLString.trimmed(), QUrl::StrictMode);
    const bool isSafe = url.isValid() && url.scheme().toLower() == "https"_L1 && !url.host().isEmpty();
    return isSafe ? std::optional(url) : std::nullopt;
}

bool VeranoxPublicationPolicyHint::hasSnippets() const
{
    return !hostsEntry.trimmed().isEmpty() && !grant.trimmed().isEmpty();
}

std::optional<QString> VeranoxPublicationReachability::summary() const
{
    const QString word = state.trimmed();
    if (word == "reachable"_L1) {
        if (everyone)
            return u"Reachable from every device in the tailnet"_s;
        if (peers == 1)
            return u"Reachable from 1 device"_s;
        return u"Reachable from "_s + QString::number(peers) + u" devices"_s;
    }
    if (word == "unreachable"_L1)
        return u"No device is allowed to reach it yet"_s;
    if (word == "unknown"_L1)
        return u"Reachability unknown"_s;
    return std::nullopt;
}

QString VeranoxPublicationReachability::help() const
{
    const QString word = state.trimmed();
    if (word == "unreachable"_L1)
        return u"Unreachable — the tailnet's access policy lets no device connect to this publication."_s;
    if (word != "unknown"_L1)
        return summary().value_or(QString());
    const QString reason = detail.trimmed();
    return reason.isEmpty() ? u"Veranox couldn't tell which devices the tailnet policy lets connect."_s : reason;
}
