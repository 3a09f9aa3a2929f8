#pragma once
#include "System/VeranoxGlobalShortcut.h"
#include <QObject>

// One key combination that works wherever the focus is. Main thread only.
class VeranoxGlobalHotKeyController : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Puts shortcut in the place of the combination in force, or takes that away. A combination that the system
    // refuses, because another program has it or because this keyboard cannot make it, leaves none: isRegistered()
    // tells.
    virtual void configure(std::optional<VeranoxGlobalShortcut> shortcut) = 0;

    // Whether a combination is in force. Where the desktop asks the person first, this turns true later.
    virtual bool isRegistered() const = 0;

Q_SIGNALS:
    void triggered(); // the combination was pressed
};
