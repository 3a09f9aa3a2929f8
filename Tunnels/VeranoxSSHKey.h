#pragma once
#include <QMetaType>
#include <QString>

// One private key that a tunnel can use. Its path is its identity.
struct VeranoxSSHKey {
    QString path; // absolute
    QString name; // last component of the path

    bool operator==(const VeranoxSSHKey &) const = default;
};

Q_DECLARE_METATYPE(VeranoxSSHKey)
