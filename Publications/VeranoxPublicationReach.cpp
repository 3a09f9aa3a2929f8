#include "Publications/VeranoxPublicationReach.h"

using namespace Qt::StringLiterals;

QString rawValue(VeranoxPublicationReach reach)
{
    return reach == VeranoxPublicationReach::funnel ? u"funnel"_s : u"tailnet"_s;
}

VeranoxPublicationReach publicationReach(const QString &word)
{
    return word == "funnel"_L1 ? VeranoxPublicationReach::funnel : VeranoxPublicationReach::tailnet;
}
