#include "Service/Net/Ledger.h"

#include <boost/asio/post.hpp>
#include <utility>

namespace veranox {

Ledger::Entry::Entry(std::shared_ptr<Ledger> ledger) : m_ledger(std::move(ledger))
{
    m_ledger->m_active.fetch_add(1, std::memory_order_relaxed);
}

void Ledger::Entry::close(CloseReason reason, std::uint64_t bytesToTarget, std::uint64_t bytesToClient)
{
    if (!std::exchange(m_isOpen, false))
        return;
    m_ledger->m_bytesToTarget.fetch_add(bytesToTarget, std::memory_order_relaxed);
    m_ledger->m_bytesToClient.fetch_add(bytesToClient, std::memory_order_relaxed);
    m_ledger->m_closed.at(static_cast<std::size_t>(reason)).fetch_add(1, std::memory_order_relaxed);
    m_ledger->m_active.fetch_sub(1, std::memory_order_release);
}

Ledger::Ledger(boost::asio::any_io_executor reporting, Report report)
    : m_reporting(std::move(reporting)),
      m_report(std::move(report))
{
}

/// However many there are, one report at a time is on its way.
void Ledger::attempted(std::string problem)
{
    const std::scoped_lock lock(m_mutex);
    m_attempts.anySucceeded = m_attempts.anySucceeded || problem.empty();
    m_attempts.problem = std::move(problem);
    if (m_isReportDue)
        return;
    boost::asio::post(m_reporting, [self = shared_from_this()] { self->report(); });
    m_isReportDue = true;
}

void Ledger::report()
{
    Attempts attempts;
    {
        const std::scoped_lock lock(m_mutex);
        attempts = std::exchange(m_attempts, {});
        m_isReportDue = false;
    }
    const Report report = m_report; // which may silence this
    if (report)
        report(attempts);
}

Tally Ledger::tally() const
{
    Tally tally{.active = m_active.load(std::memory_order_acquire),
        .bytesToTarget = m_bytesToTarget.load(std::memory_order_relaxed),
        .bytesToClient = m_bytesToClient.load(std::memory_order_relaxed)};
    for (std::size_t i = 0; i < closeReasonCount; ++i)
        tally.closed.at(i) = m_closed.at(i).load(std::memory_order_relaxed);
    return tally;
}

} // namespace veranox
