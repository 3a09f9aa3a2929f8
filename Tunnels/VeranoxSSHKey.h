#pragma once
#include <QMetaType>
#include <QString>

// One private key that a tunnel can use. Its path is its identity.
struct VeranoxSSHKey {
    Q_GADGET
    Q_PROPERTY(QString path MEMBER path)
    Q_PROPERTY(QString name MEMBER name)

public:
    QString path; // absolute
    QString name; // last component of the path

    bool operator==(const VeranoxSSHKey &) const = default;
};

Q_DECLARE_METATYPE(VeranoxSSHKey)
