#include "Controls/VeranoxRuntimeStateIndicator.h"

using namespace Qt::StringLiterals;

namespace {

QString listeningHelp(qint64 connections)
{
    if (connections < 1)
        return u"Listening"_s;
    const QString noun = connections == 1 ? u" active connection"_s : u" active connections"_s;
    return u"Listening — "_s + QString::number(connections) + noun;
}

} // namespace

VeranoxRuntimeStateIndicator::Vocabulary VeranoxRuntimeStateIndicator::Vocabulary::tunnels()
{
    return {.startingHelp = u"Starting — connecting through the profile…"_s, .blockedHelp = u"Blocked"_s};
}

VeranoxRuntimeStateIndicator::Vocabulary VeranoxRuntimeStateIndicator::Vocabulary::publications()
{
    return {.startingHelp = u"Starting — waiting for the profile's tailnet…"_s,
        .blockedHelp = u"Blocked — publishing to the public internet with Funnel isn't available in this version."_s};
}

VeranoxRuntimeStateIndicator::VeranoxRuntimeStateIndicator(const VeranoxTunnel &tunnel)
    : disabled(tunnel.disabled),
      state(tunnel.state),
      lastError(tunnel.lastError),
      activeConns(tunnel.activeConns),
      vocabulary(Vocabulary::tunnels())
{
}

VeranoxRuntimeStateIndicator::VeranoxRuntimeStateIndicator(const VeranoxPublication &publication)
    : disabled(publication.disabled),
      state(publication.state),
      lastError(publication.lastError),
      activeConns(publication.activeConns),
      unreachable(publication.isUnreachable()),
      vocabulary(Vocabulary::publications())
{
}

VeranoxRuntimeStateIndicator::Mark VeranoxRuntimeStateIndicator::mark() const
{
    if (!disabled && state == "starting"_L1)
        return Mark::spinner;
    return state == "blocked"_L1 ? Mark::blocked : Mark::dot;
}

VeranoxTone::Tone VeranoxRuntimeStateIndicator::color() const
{
    if (disabled)
        return VeranoxTone::FaintGray;
    if (state == "listening"_L1)
        return lastError.isEmpty() && !unreachable ? VeranoxTone::Green : VeranoxTone::Orange;
    return state == "error"_L1 ? VeranoxTone::Red : VeranoxTone::Gray;
}

QString VeranoxRuntimeStateIndicator::help() const
{
    if (state == "blocked"_L1)
        return vocabulary.blockedHelp;
    if (disabled)
        return u"Stopped"_s;
    if (state == "starting"_L1)
        return vocabulary.startingHelp;
    if (!lastError.isEmpty())
        return lastError;
    if (unreachable)
        return u"Unreachable — the tailnet's access policy lets no device connect"_s;
    if (state == "listening"_L1)
        return listeningHelp(activeConns);
    return state == "error"_L1 ? u"Error"_s : u"Stopped"_s;
}
