#pragma once
#include "Tunnels/VeranoxSSHKey.h"
#include <QDir>
#include <QList>

// The user's private keys, known by their names alone: no file is ever opened.
namespace VeranoxSSHKeys {

// The keys directly in .ssh of that home folder, by name in ascending order. A key has its public key beside it or one
// of ssh's own names; folders, symbolic links and hidden files are none. A folder that cannot be listed has no keys.
// Any thread; takes as long as listing the folder.
QList<VeranoxSSHKey> discover(const QString &home = QDir::homePath());

} // namespace VeranoxSSHKeys
