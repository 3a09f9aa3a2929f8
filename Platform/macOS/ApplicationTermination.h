#pragma once
#include "Platform/Termination.h"
#include "Platform/UnixSignals.h"

// Termination on macOS: the signals of the process, and the quit event into which Qt turns applicationShouldTerminate.
// The first quit event is held back; one that comes after it goes through, which is how the application ends itself.
class ApplicationTermination : public Termination {
    Q_OBJECT

public:
    explicit ApplicationTermination(QObject *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    UnixSignals m_signals;
    bool m_requested = false;
};
