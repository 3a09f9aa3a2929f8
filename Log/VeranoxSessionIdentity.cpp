#include "Log/VeranoxSessionIdentity.h"
#include <QOperatingSystemVersion>
#include <QSysInfo>
#include <QVersionNumber>

using namespace Qt::StringLiterals;

namespace {

bool isMacOS()
{
    return QOperatingSystemVersion::currentType() == QOperatingSystemVersion::MacOS;
}

QString runningSystemName()
{
    const QString kernel = QSysInfo::kernelType();
    return isMacOS() ? u"macOS"_s : kernel.left(1).toUpper() + kernel.sliced(1);
}

QString runningSystemVersion()
{
    const auto version = QVersionNumber::fromString(isMacOS() ? QSysInfo::productVersion() : QSysInfo::kernelVersion());
    return u"%1.%2.%3"_s.arg(version.majorVersion()).arg(version.minorVersion()).arg(version.microVersion());
}

} // namespace

VeranoxSessionIdentity VeranoxSessionIdentity::of(const QVariantMap &infoDictionary)
{
    const QString identifier = infoDictionary.value(u"CFBundleIdentifier"_s).toString();
    return {.build = VeranoxAppVersion(infoDictionary),
        .bundleIdentifier = identifier.isEmpty() ? u"unknown"_s : identifier,
        .systemVersion = runningSystemVersion(),
        .systemName = runningSystemName(),
        .architecture = QSysInfo::buildCpuArchitecture()};
}
