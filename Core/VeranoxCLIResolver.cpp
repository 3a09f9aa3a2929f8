#include "Core/VeranoxCLIResolver.h"
#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Whoever can write the file decides what runs with this user's rights.
bool isTrusted(const QString &path)
{
    if (!path.startsWith(u'/'))
        return false;
    const QFileInfo file(path);
    const bool writableByOthers = (file.permissions() & (QFile::WriteGroup | QFile::WriteOther)) != 0;
    return file.isFile() && file.isExecutable() && !writableByOthers;
}

} // namespace

std::optional<VeranoxCommand> VeranoxCLIResolver::resolve(const QString &resourceDirectory)
{
    return firstTrusted(candidates(resourceDirectory));
}

QStringList VeranoxCLIResolver::candidates(const QString &resourceDirectory)
{
    QStringList paths{u"/opt/homebrew/bin/veranox"_s, u"/usr/local/bin/veranox"_s};
    if (!resourceDirectory.isEmpty())
        paths.prepend(resourceDirectory + u"/veranox"_s);
    return paths;
}

std::optional<VeranoxCommand> VeranoxCLIResolver::firstTrusted(const QStringList &candidates)
{
    const auto found = std::ranges::find_if(candidates, isTrusted);
    if (found == candidates.end())
        return std::nullopt;
    return VeranoxCommand{.executableURL = QUrl::fromLocalFile(*found), .leadingArguments = {}};
}
