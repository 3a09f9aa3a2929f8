#pragma once
#include <QMetaType>
#include <QString>
#include <QUuid>

// The question whether saved router settings shall take effect now.
struct VeranoxRouterRestartPrompt {
    QUuid id;
    QString title;
    QString message;

    bool operator==(const VeranoxRouterRestartPrompt &) const = default;
};
