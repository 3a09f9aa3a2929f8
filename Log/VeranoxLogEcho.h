#pragma once
#include <QObject>
#include <QUuid>

class VeranoxStore;

// Repeats the activity log on standard error, for a person who started the program in a terminal and for the journal of
// a desktop session. Main thread only; the store outlives it.
class VeranoxLogEcho final : public QObject {
    Q_OBJECT

public:
    explicit VeranoxLogEcho(VeranoxStore &store);

private:
    void printNewLines();

    VeranoxStore &m_store;
    QUuid m_lastPrinted;
};
