#pragma once
#include "Base/Process/ToolRunner.h"
#include <QList>

// Services that an earlier run of this application has left behind. Main thread only, from within a job.
class VeranoxStaleServices {
public:
    explicit VeranoxStaleServices(jobs::MainQueue &queue) : m_tools(queue) { }

    // The processes of this user whose whole command line, its words joined by single blanks, is this one. None when
    // the system's tools give no answer.
    jobs::Async<QList<qint32>> matchingProcessIdentifiers(QString exactCommandLine);

    // Signals each process that has that command line still: its identifier may belong to another one by now.
    jobs::Async<> signalIfStillMatching(QList<qint32> identifiers, QString expectedCommandLine, int signal);

private:
    jobs::Async<bool> matches(qint32 identifier, QString commandLine);
    ToolRunner m_tools;
};
