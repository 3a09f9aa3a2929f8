#pragma once
#include <QMetaType>
#include <QString>

// What the service found on this computer.
struct VeranoxEnvironment {
    Q_GADGET
    Q_PROPERTY(bool tailscaledAvailable MEMBER tailscaledAvailable)
    Q_PROPERTY(QString tailscaledBin MEMBER tailscaledBin)

public:
    bool tailscaledAvailable = false;
    QString tailscaledBin;

    bool operator==(const VeranoxEnvironment &) const = default;
};

Q_DECLARE_METATYPE(VeranoxEnvironment)
