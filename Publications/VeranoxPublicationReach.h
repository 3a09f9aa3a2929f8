#pragma once
#include <QString>
#include <array>

// Who can reach a publication. A configuration can hold funnel, but it is never served: the service calls it blocked.
enum class VeranoxPublicationReach { tailnet, funnel };

inline constexpr std::array allVeranoxPublicationReaches{
    VeranoxPublicationReach::tailnet, VeranoxPublicationReach::funnel};

// The word that the service uses.
QString rawValue(VeranoxPublicationReach reach);

// The reach of that word; any other word reads as the tailnet.
VeranoxPublicationReach publicationReach(const QString &word);
