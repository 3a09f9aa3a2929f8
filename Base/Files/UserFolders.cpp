#include "Base/Files/UserFolders.h"
#include <QDir>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

// Not every version of Qt ignores a relative path in the environment. Only the environment can name one: the usual
// folder then takes its place.
QString absolute(const QString &named, const QString &usual)
{
    return named.isEmpty() || QDir::isAbsolutePath(named) ? named : QDir::home().filePath(usual);
}

} // namespace

QString userDataFolder()
{
    return absolute(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation), u".local/share"_s);
}

QString userConfigurationFolder()
{
    return absolute(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), u".config"_s);
}
