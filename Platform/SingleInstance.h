#pragma once
#include <QObject>
#include <QString>

// Keeps the application to one process per desktop session: a second launch brings the first one forward and ends.
// Main thread only.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Outcome {
        first, // this process is the one; it stays so until it ends
        handedOver, // another process is, and it has been asked to come forward: this one should end with 0
        notAnswered, // another process is, but it does not answer: this one should end with a failure
        unguarded, // nothing on this system can tell: this process runs, and a second one would too
    };

    using QObject::QObject;

    // Finds out which process this is. Call once, before anything that two processes must not both do. It may wait for
    // the other process, a few seconds at most.
    virtual Outcome acquire() = 0;

Q_SIGNALS:
    // A second launch has handed over to this process. The token, if not empty, lets a window take the focus under
    // desktops that demand one (XDG_ACTIVATION_TOKEN).
    void activationRequested(const QString &activationToken);
};
