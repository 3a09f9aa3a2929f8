#include "API/Client/VeranoxConfigCache.h"
#include <QScopeGuard>

namespace {

using Result = VeranoxAPIResult<QByteArray>;

jobs::Async<> passOn(jobs::Job<Result> fetch, jobs::Resolver<Result> to)
{
    try {
        to.resolve(co_await fetch);
    } catch (...) { // the cache is gone
        to.fail(std::current_exception());
    }
}

} // namespace

VeranoxConfigCache::VeranoxConfigCache(jobs::MainQueue &queue, Fetch fetch)
    : m_queue(queue),
      m_fetch(std::move(fetch)),
      m_jobs(queue)
{
}

VeranoxAPICall<QByteArray> VeranoxConfigCache::data()
{
    if (jobs::this_job::cancelled())
        co_return std::unexpected(VeranoxAPIFailure::cancelled());
    if (m_entry && m_queue.clock().now() - m_entry->fetchedAt < timeToLive)
        co_return m_entry->data;
    if (!m_inFlight)
        m_inFlight = m_jobs.start(fetchAndKeep(m_epoch));
    // Who waits for a job waits to its end; for a Completion, until a cancel.
    const jobs::Completion<Result> arrival(m_queue);
    const auto to = arrival.resolver();
    const std::stop_callback leave(
        to.stopToken(), [to] { to.resolve(std::unexpected(VeranoxAPIFailure::cancelled())); });
    const auto passing = jobs::fork(passOn(m_inFlight, to));
    co_return co_await arrival;
}

VeranoxAPICall<QByteArray> VeranoxConfigCache::fetchAndKeep(std::uint64_t epoch)
{
    const auto leaveTheFlight = qScopeGuard([&] {
        if (epoch == m_epoch) // else m_inFlight is empty, or a later fetch
            m_inFlight = {};
    });
    Result data = co_await m_fetch();
    if (data && epoch == m_epoch)
        m_entry = Entry{.data = *data, .fetchedAt = m_queue.clock().now()};
    co_return data;
}

void VeranoxConfigCache::invalidate()
{
    m_entry.reset();
    m_inFlight = {};
    ++m_epoch;
}
