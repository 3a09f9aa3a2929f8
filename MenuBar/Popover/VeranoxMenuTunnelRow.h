#pragma once
#include "API/Values/VeranoxRuntimeStateIndicator.h"
#include <QMetaType>
#include <QtQml/qqmlregistration.h>

// What a person has just done to a row of the popover, until the store tells how it ended.
struct VeranoxMenuRowActivity {
    bool justCopied = false;
    bool isRetrying = false;
    bool isSwitching = false;

    bool operator==(const VeranoxMenuRowActivity &) const = default;
};

// One tunnel as the popover shows it.
struct VeranoxMenuTunnelRow {
    Q_GADGET
    QML_VALUE_TYPE(menuTunnelRow)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString accent MEMBER accent)
    Q_PROPERTY(QString target MEMBER target)
    Q_PROPERTY(QString mode MEMBER mode)
    Q_PROPERTY(QString endpoint MEMBER endpoint)
    Q_PROPERTY(int mark MEMBER mark)
    Q_PROPERTY(int tone MEMBER tone)
    Q_PROPERTY(QString stateText MEMBER stateText)
    Q_PROPERTY(bool isOn MEMBER isOn)
    Q_PROPERTY(QString toggleHelp MEMBER toggleHelp)
    Q_PROPERTY(bool canRetry MEMBER canRetry)
    Q_PROPERTY(bool justCopied MEMBER justCopied)
    Q_PROPERTY(bool isRetrying MEMBER isRetrying)
    Q_PROPERTY(bool isSwitching MEMBER isSwitching)

public:
    // `accent` is the identifier of the profile's colour, empty when its profile is gone.
    static VeranoxMenuTunnelRow of(
        const VeranoxTunnel &tunnel, const QString &accent, const VeranoxMenuRowActivity &activity);

    const QString &id() const { return name; }
    bool operator==(const VeranoxMenuTunnelRow &) const = default;

    QString name;
    QString title;
    QString accent;
    QString target; // and the bastion on the way
    QString mode;
    QString endpoint; // where a client connects
    int mark = 0; // VeranoxRuntimeStateIndicator::Mark
    int tone = 0; // VeranoxTone::Tone
    QString stateText; // the state in words, or what went wrong
    bool isOn = false;
    QString toggleHelp;
    bool canRetry = false;
    bool justCopied = false;
    bool isRetrying = false;
    bool isSwitching = false;
};

Q_DECLARE_METATYPE(VeranoxMenuTunnelRow)
