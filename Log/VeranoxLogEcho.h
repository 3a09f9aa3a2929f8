#pragma once
#include "Base/Models/Watches.h"
#include <QObject>
#include <QTextStream>
#include <cstdio>

class VeranoxActivityLog;

// Repeats what is logged from now on, for a person who started the program in a terminal and for the journal of a
// desktop session: every line, however many come at once, in one piece after the turn of the event loop that logged
// them. Main thread only; the log and the file outlive it.
class VeranoxLogEcho final : public QObject {
    Q_OBJECT

public:
    VeranoxLogEcho(const VeranoxActivityLog &log, std::FILE *file);
    ~VeranoxLogEcho() override; // prints what the last turn of the event loop has logged

private:
    QTextStream m_out;
    Watches m_watches;
};
