#include "Platform/ResourceDirectory.h"
#include <QCoreApplication>
#include <QDir>

QString platform::resourceDirectory()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Resources"));
}
