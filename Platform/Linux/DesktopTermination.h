#pragma once
#include "Platform/Termination.h"
#include "Platform/UnixSignals.h"

// Termination on Linux: the signals of the process, and the moment when the session manager of the desktop has every
// program commit its data because the session ends.
class DesktopTermination : public Termination {
    Q_OBJECT

public:
    explicit DesktopTermination(QObject *parent = nullptr);

private:
    UnixSignals m_signals;
};
