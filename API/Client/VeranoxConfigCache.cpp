#include "API/Client/VeranoxConfigCache.h"
#include <QScopeGuard>

VeranoxConfigCache::VeranoxConfigCache(jobs::MainQueue &queue, Fetch fetch)
    : m_clock(queue.clock()),
      m_fetch(std::move(fetch)),
      m_jobs(queue)
{
}

jobs::Async<QByteArray> VeranoxConfigCache::data()
{
    if (m_entry && m_clock.now() - m_entry->fetchedAt < timeToLive)
        co_return m_entry->data;
    if (!m_inFlight)
        m_inFlight = m_jobs.start(fetchAndKeep(m_epoch));
    const auto fetch = m_inFlight;
    co_return co_await fetch;
}

jobs::Async<QByteArray> VeranoxConfigCache::fetchAndKeep(std::uint64_t epoch)
{
    const auto leaveTheFlight = qScopeGuard([&] {
        if (epoch == m_epoch) // else m_inFlight is empty, or a later fetch
            m_inFlight = {};
    });
    QByteArray data = co_await m_fetch();
    if (epoch == m_epoch)
        m_entry = Entry{.data = data, .fetchedAt = m_clock.now()};
    co_return data;
}

void VeranoxConfigCache::invalidate()
{
    m_entry.reset();
    m_inFlight = {};
    ++m_epoch;
}
