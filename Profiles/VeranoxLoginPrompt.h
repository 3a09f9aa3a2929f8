#pragma once
#include <QMetaType>
#include <QString>
#include <QUrl>
#include <QUuid>

// A sign-in that waits for the user's approval in a browser.
struct VeranoxLoginPrompt {
    QUuid id; // new for each prompt
    QString profileName;
    QString displayName;
    QString hostname;
    QString backend;
    QString stateDir;
    QUrl authURL;

    bool operator==(const VeranoxLoginPrompt &) const = default;
};
