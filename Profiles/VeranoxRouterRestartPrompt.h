#pragma once
#include <QMetaType>
#include <QString>
#include <QUuid>

// The question whether saved router settings shall take effect now.
struct VeranoxRouterRestartPrompt {
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString message MEMBER message)

public:
    QUuid id;
    QString title;
    QString message;

    bool operator==(const VeranoxRouterRestartPrompt &) const = default;
};
