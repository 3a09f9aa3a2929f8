#pragma once
#include <QMetaType>
#include <QString>

// What the service found on this computer.
struct VeranoxEnvironment {
    bool tailscaledAvailable = false;
    QString tailscaledBin;

    bool operator==(const VeranoxEnvironment &) const = default;
};

Q_DECLARE_METATYPE(VeranoxEnvironment)
