#include "Platform/InformationDictionary.h"
#include "BuildInformation.h"

using namespace Qt::StringLiterals;

QVariantMap platform::informationDictionary()
{
    return {{u"CFBundleIdentifier"_s, u"app.veranox.Menu"_s},
        {u"CFBundleShortVersionString"_s, QStringLiteral(VERANOX_BUILD_VERSION)},
        {u"CFBundleVersion"_s, QStringLiteral(VERANOX_BUILD_NUMBER)},
        {u"VeranoxBuildCommit"_s, QStringLiteral(VERANOX_BUILD_COMMIT)},
        {u"VeranoxBuildDate"_s, QStringLiteral(VERANOX_BUILD_DATE)},
        {u"VeranoxBuildChannel"_s, QStringLiteral(VERANOX_BUILD_CHANNEL)}};
}
