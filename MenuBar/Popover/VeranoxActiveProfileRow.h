#pragma once
#include "API/Records/VeranoxProfile.h"
#include <QMetaType>
#include <QtQml/qqmlregistration.h>

// One profile as the popover shows it.
struct VeranoxActiveProfileRow {
    Q_GADGET
    QML_VALUE_TYPE(activeProfileRow)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString accent MEMBER accent)
    Q_PROPERTY(QString displayName MEMBER displayName)
    Q_PROPERTY(QString suffix MEMBER suffix)
    Q_PROPERTY(QString moreSuffixes MEMBER moreSuffixes)
    Q_PROPERTY(QString suffixHelp MEMBER suffixHelp)
    Q_PROPERTY(QString backend MEMBER backend)
    Q_PROPERTY(QString hostname MEMBER hostname)
    Q_PROPERTY(QString status MEMBER status)
    Q_PROPERTY(bool isOK MEMBER isOK)

public:
    static VeranoxActiveProfileRow of(const VeranoxProfile &profile);

    const QString &id() const { return name; }
    bool operator==(const VeranoxActiveProfileRow &) const = default;

    QString name;
    QString symbol;
    QString accent; // identifier of a profile colour
    QString displayName;
    QString suffix; // the first
    QString moreSuffixes; // "+2"; empty when there is no more
    QString suffixHelp; // all of them, one a line
    QString backend;
    QString hostname;
    QString status;
    bool isOK = false;
};

Q_DECLARE_METATYPE(VeranoxActiveProfileRow)
