#pragma once
#include <QMetaType>
#include <QString>
#include <QUrl>
#include <QUuid>

// A sign-in that waits for the user's approval in a browser.
struct VeranoxLoginPrompt {
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id)
    Q_PROPERTY(QString profileName MEMBER profileName)
    Q_PROPERTY(QString displayName MEMBER displayName)
    Q_PROPERTY(QString hostname MEMBER hostname)
    Q_PROPERTY(QString backend MEMBER backend)
    Q_PROPERTY(QString stateDir MEMBER stateDir)
    Q_PROPERTY(QUrl authURL MEMBER authURL)

public:
    QUuid id; // new for each prompt
    QString profileName;
    QString displayName;
    QString hostname;
    QString backend;
    QString stateDir;
    QUrl authURL;

    bool operator==(const VeranoxLoginPrompt &) const = default;
};
