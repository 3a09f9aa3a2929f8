#include "Core/VeranoxStatusReport.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

namespace {

QString line(QStringView kind, const QString &name, const QString &state, const QStringList &details)
{
    QString text = u"%1  %2  %3"_s.arg(kind, -11).arg(name.simplified(), -16).arg(state.simplified(), -11);
    for (const QString &detail : details) {
        if (!detail.isEmpty())
            text += u"  "_s + detail.simplified();
    }
    return text.trimmed();
}

QString stateOf(const VeranoxProfile &profile)
{
    if (!profile.status.backendState.isEmpty())
        return profile.status.backendState;
    return profile.status.ok ? u"ok"_s : u"unknown"_s;
}

// Where traffic comes in and where it goes; an address that is not known yet is left out.
QString route(const QString &from, const QString &to)
{
    return to.isEmpty() ? from : from + u" -> "_s + to;
}

template <class Record> QString stateOf(const Record &record)
{
    return record.disabled ? u"disabled"_s : record.state;
}

} // namespace

QStringList describeStatus(const VeranoxStore &store)
{
    QStringList lines;
    lines.append(line(u"service", u"veranox"_s, store.serviceState().logWord(), {store.serviceState().message()}));
    for (const VeranoxProfile &profile : store.profiles())
        lines.append(line(u"profile", profile.name, stateOf(profile),
            {profile.suffixes.join(u' '), profile.status.ok ? QString() : profile.status.error}));
    for (const VeranoxTunnel &tunnel : store.tunnels())
        lines.append(line(u"tunnel", tunnel.name, stateOf(tunnel),
            {route(tunnel.listen, tunnel.target), u"via "_s + tunnel.profile, tunnel.lastError}));
    for (const VeranoxPublication &publication : store.publications())
        lines.append(line(u"publication", publication.name, stateOf(publication),
            {route(publication.target, publication.address), u"on "_s + publication.profile, publication.lastError}));
    return lines;
}
