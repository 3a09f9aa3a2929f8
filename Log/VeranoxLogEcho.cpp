#include "Log/VeranoxLogEcho.h"
#include "Log/VeranoxActivityLog.h"

VeranoxLogEcho::VeranoxLogEcho(const VeranoxActivityLog &log, std::FILE *file) : m_out(file)
{
    connect(&log, &VeranoxActivityLog::added, this,
        [this](const VeranoxRuntimeLogEntry &entry) { m_out << entry.message << '\n'; });
    m_watches.add([&log] { return log.turns(); }, [this] { m_out.flush(); });
}

VeranoxLogEcho::~VeranoxLogEcho() = default;
