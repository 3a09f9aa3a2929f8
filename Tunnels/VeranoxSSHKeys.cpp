#include "Tunnels/VeranoxSSHKeys.h"
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array wellKnown{
    "id_rsa"_L1, "id_ecdsa"_L1, "id_ecdsa_sk"_L1, "id_ed25519"_L1, "id_ed25519_sk"_L1, "id_dsa"_L1};
constexpr std::array neverKeys{"config"_L1, "known_hosts"_L1, "known_hosts_old"_L1, "authorized_keys"_L1, "agent"_L1};

// Every visible entry, whatever it is.
QStringList namesIn(const QString &folder)
{
    QStringList names;
    QDirIterator entries(folder, QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        names.append(entries.fileName());
    }
    return names;
}

bool looksLikeKey(const QString &name, const QSet<QString> &names)
{
    if (name.endsWith(".pub"_L1) || std::ranges::find(neverKeys, name) != neverKeys.end())
        return false;
    return names.contains(name + ".pub"_L1) || std::ranges::find(wellKnown, name) != wellKnown.end();
}

bool isRegularFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && !file.isSymLink();
}

} // namespace

QList<VeranoxSSHKey> VeranoxSSHKeys::discover(const QString &home)
{
    const QString folder = QDir(home).absoluteFilePath(u".ssh"_s);
    const QStringList entries = namesIn(folder);
    const QSet<QString> names(entries.begin(), entries.end());
    QList<VeranoxSSHKey> keys;
    for (const QString &name : entries)
        if (const QString path = folder + u'/' + name; looksLikeKey(name, names) && isRegularFile(path))
            keys.append({.path = path, .name = name});
    std::ranges::sort(keys, {}, &VeranoxSSHKey::name); // no two are equal
    return keys;
}
