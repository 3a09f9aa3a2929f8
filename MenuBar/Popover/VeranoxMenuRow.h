#pragma once
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "MenuBar/Popover/VeranoxRowActivity.h"
#include <QMetaType>
#include <QtQml/qqmlregistration.h>

// One tunnel or publication as the popover shows it.
struct VeranoxMenuRow {
    Q_GADGET
    QML_VALUE_TYPE(menuRow)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString accent MEMBER accent)
    Q_PROPERTY(QString target MEMBER target)
    Q_PROPERTY(QString mode MEMBER mode)
    Q_PROPERTY(QString address MEMBER address)
    Q_PROPERTY(QString addressHelp MEMBER addressHelp)
    Q_PROPERTY(bool isBlocked MEMBER isBlocked)
    Q_PROPERTY(bool canCopy MEMBER canCopy)
    Q_PROPERTY(int mark MEMBER mark)
    Q_PROPERTY(int tone MEMBER tone)
    Q_PROPERTY(QString stateText MEMBER stateText)
    Q_PROPERTY(QString stateHelp MEMBER stateHelp)
    Q_PROPERTY(bool isOn MEMBER isOn)
    Q_PROPERTY(bool canSwitch MEMBER canSwitch)
    Q_PROPERTY(QString toggleHelp MEMBER toggleHelp)
    Q_PROPERTY(bool canRetry MEMBER canRetry)
    Q_PROPERTY(bool retryEnabled MEMBER retryEnabled)
    Q_PROPERTY(bool justCopied MEMBER justCopied)
    Q_PROPERTY(bool isRetrying MEMBER isRetrying)
    Q_PROPERTY(bool isSwitching MEMBER isSwitching)

public:
    // What a row shows that its record does not tell.
    struct Surroundings {
        QString accent; // the identifier of the profile's colour, empty when its profile is gone
        bool isEditable = true; // whether records of the kind can be changed now
        VeranoxRowActivity activity;
    };

    static VeranoxMenuRow of(const VeranoxTunnel &tunnel, const Surroundings &surroundings);
    static VeranoxMenuRow of(const VeranoxPublication &publication, const Surroundings &surroundings);

    const QString &id() const { return name; }
    bool operator==(const VeranoxMenuRow &) const = default;

    QString name;
    QString title;
    QString accent;
    QString target; // what it leads to, and the bastion on the way
    QString mode; // a tunnel's
    QString address; // where a client connects, or that it cannot
    QString addressHelp;
    bool isBlocked = false; // a publication that is not served
    bool canCopy = false; // the address
    int mark = 0; // VeranoxRuntimeStateIndicator::Mark
    int tone = 0; // VeranoxTone::Tone
    QString stateText; // the state in words, or what went wrong
    QString stateHelp; // what went wrong, whatever the state, else the state in words
    bool isOn = false;
    bool canSwitch = false;
    QString toggleHelp;
    bool canRetry = false;
    bool retryEnabled = false;
    bool justCopied = false;
    bool isRetrying = false;
    bool isSwitching = false;
};

Q_DECLARE_METATYPE(VeranoxMenuRow)
