#include "Base/Jobs/JobScope.h"

namespace jobs {

JobScope::~JobScope()
{
    m_closed = true;
    while (!m_jobs.empty()) {
        const detail::Ref core(m_jobs.back());
        core->abandon(); // removes itself from here, unless it is the one that runs
        if (core->onStack()) {
            core->scope = nullptr;
            remove(*core.get());
        }
    }
}

void JobScope::add(detail::JobCore &core)
{
    if (m_closed) { // started by a frame that the destructor above unwinds
        core.abandon();
        return;
    }
    core.ref();
    core.scope = this;
    m_jobs.push_back(&core);
    core.start();
}

void JobScope::remove(detail::JobCore &core) noexcept
{
    std::erase(m_jobs, &core);
    core.unref();
}

void JobScope::cancelAll()
{
    const auto jobs = m_jobs;
    for (detail::JobCore *const core : jobs)
        core->cancel();
}

} // namespace jobs
