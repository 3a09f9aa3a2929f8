#pragma once
#include <QMetaType>
#include <QString>
#include <array>

// Holds the enumeration so that views read it by name.
namespace VeranoxPublishing {
Q_NAMESPACE

// Who can reach a publication. A configuration can hold funnel, but it is never served: the service calls it blocked.
enum class Reach { tailnet, funnel };
Q_ENUM_NS(Reach)

} // namespace VeranoxPublishing

using VeranoxPublicationReach = VeranoxPublishing::Reach;

inline constexpr std::array allVeranoxPublicationReaches{
    VeranoxPublicationReach::tailnet, VeranoxPublicationReach::funnel};

// The word that the service uses.
QString rawValue(VeranoxPublicationReach reach);

// The reach of that word; any other word reads as the tailnet.
VeranoxPublicationReach publicationReach(const QString &word);
