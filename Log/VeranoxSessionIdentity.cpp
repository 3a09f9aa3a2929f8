#include "Log/VeranoxSessionIdentity.h"
#include <QOperatingSystemVersion>
#include <QSysInfo>
#include <QVersionNumber>

using namespace Qt::StringLiterals;

namespace {

QString runningSystemVersion()
{
    const bool isMacOS = QOperatingSystemVersion::currentType() == QOperatingSystemVersion::MacOS;
    const auto version = QVersionNumber::fromString(isMacOS ? QSysInfo::productVersion() : QSysInfo::kernelVersion());
    return u"%1.%2.%3"_s.arg(version.majorVersion()).arg(version.minorVersion()).arg(version.microVersion());
}

} // namespace

VeranoxSessionIdentity VeranoxSessionIdentity::of(const QVariantMap &infoDictionary)
{
    const QString identifier = infoDictionary.value(u"CFBundleIdentifier"_s).toString();
    return {.build = VeranoxAppVersion(infoDictionary),
        .bundleIdentifier = identifier.isEmpty() ? u"unknown"_s : identifier,
        .systemVersion = runningSystemVersion(),
        .architecture = QSysInfo::buildCpuArchitecture()};
}
