#include "Core/VeranoxLogEcho.h"
#include "Core/VeranoxStore.h"

VeranoxLogEcho::VeranoxLogEcho(const VeranoxStore &store, std::FILE *file) : m_out(file)
{
    connect(&store, &VeranoxStore::runtimeLogAdded, this,
        [this](const VeranoxRuntimeLogEntry &entry) { m_out << entry.message << '\n'; });
    connect(&store, &VeranoxStore::runtimeLogChanged, this, [this] { m_out.flush(); });
}

VeranoxLogEcho::~VeranoxLogEcho() = default;
