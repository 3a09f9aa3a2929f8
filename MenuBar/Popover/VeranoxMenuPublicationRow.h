#pragma once
#include "MenuBar/Popover/VeranoxMenuTunnelRow.h"

// One publication as the popover shows it.
struct VeranoxMenuPublicationRow {
    Q_GADGET
    QML_VALUE_TYPE(menuPublicationRow)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString accent MEMBER accent)
    Q_PROPERTY(QString target MEMBER target)
    Q_PROPERTY(QString address MEMBER address)
    Q_PROPERTY(QString addressHelp MEMBER addressHelp)
    Q_PROPERTY(bool isBlocked MEMBER isBlocked)
    Q_PROPERTY(int mark MEMBER mark)
    Q_PROPERTY(int tone MEMBER tone)
    Q_PROPERTY(QString stateText MEMBER stateText)
    Q_PROPERTY(bool isOn MEMBER isOn)
    Q_PROPERTY(bool canSwitch MEMBER canSwitch)
    Q_PROPERTY(QString toggleHelp MEMBER toggleHelp)
    Q_PROPERTY(bool canRetry MEMBER canRetry)
    Q_PROPERTY(bool retryEnabled MEMBER retryEnabled)
    Q_PROPERTY(bool justCopied MEMBER justCopied)
    Q_PROPERTY(bool isRetrying MEMBER isRetrying)
    Q_PROPERTY(bool isSwitching MEMBER isSwitching)

public:
    // `accent` is the identifier of the profile's colour, empty when its profile is gone; isEditable whether
    // publications can be changed now.
    static VeranoxMenuPublicationRow of(const VeranoxPublication &publication, const QString &accent, bool isEditable,
        const VeranoxMenuRowActivity &activity);

    const QString &id() const { return name; }
    bool operator==(const VeranoxMenuPublicationRow &) const = default;

    QString name;
    QString title;
    QString accent;
    QString target; // what it serves
    QString address; // where it is reached, or that it cannot be
    QString addressHelp;
    bool isBlocked = false;
    int mark = 0; // VeranoxRuntimeStateIndicator::Mark
    int tone = 0; // VeranoxTone::Tone
    QString stateText; // the state in words, or what went wrong
    bool isOn = false;
    bool canSwitch = false;
    QString toggleHelp;
    bool canRetry = false;
    bool retryEnabled = false;
    bool justCopied = false;
    bool isRetrying = false;
    bool isSwitching = false;
};

Q_DECLARE_METATYPE(VeranoxMenuPublicationRow)
