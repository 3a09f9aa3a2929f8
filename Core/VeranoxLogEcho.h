#pragma once
#include <QDateTime>
#include <QObject>
#include <QUuid>

class VeranoxStore;

// Repeats on standard error what is logged from now on, for a person who started the program in a terminal and for the
// journal of a desktop session. Main thread only; the store outlives it.
class VeranoxLogEcho final : public QObject {
    Q_OBJECT

public:
    explicit VeranoxLogEcho(VeranoxStore &store);
    ~VeranoxLogEcho() override; // prints what the last turn of the event loop has logged

private:
    void printNewLines();

    VeranoxStore &m_store;
    const QDateTime m_beginning = QDateTime::currentDateTimeUtc();
    QUuid m_lastPrinted;
};
