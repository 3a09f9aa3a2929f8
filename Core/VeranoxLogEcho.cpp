#include "Core/VeranoxLogEcho.h"
#include "Core/VeranoxStore.h"
#include <QTextStream>

VeranoxLogEcho::VeranoxLogEcho(VeranoxStore &store) : m_store(store)
{
    connect(&store, &VeranoxStore::runtimeLogChanged, this, &VeranoxLogEcho::printNewLines);
}

VeranoxLogEcho::~VeranoxLogEcho()
{
    printNewLines();
}

void VeranoxLogEcho::printNewLines()
{
    const QList<VeranoxRuntimeLogEntry> &log = m_store.runtimeLog();
    auto firstNew = log.end();
    while (firstNew != log.begin() && std::prev(firstNew)->id != m_lastPrinted)
        --firstNew;
    QTextStream out(stderr);
    for (auto entry = firstNew; entry != log.end(); ++entry) {
        if (entry->timestamp >= m_beginning) // not the history, which comes in when it is loaded
            out << entry->message << '\n';
    }
    if (!log.isEmpty())
        m_lastPrinted = log.last().id;
}
