#pragma once
#include "Service/Net/CloseReason.h"
#include <array>
#include <atomic>
#include <boost/asio/any_io_executor.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace veranox {

/// What became of the streams of one listener.
struct Tally {
    std::int64_t active = 0;
    std::uint64_t bytesToTarget = 0; // of those that are over
    std::uint64_t bytesToClient = 0;
    std::array<std::uint64_t, closeReasonCount> closed{};

    std::uint64_t closedFor(CloseReason reason) const { return closed.at(static_cast<std::size_t>(reason)); }
};

/// How attempts to join connections went since the last report.
struct Attempts {
    bool anySucceeded = false;
    std::string problem; // why the last one failed; empty when it succeeded
};

/// Keeps the counts of one listener's streams, whichever thread they run on, and reports how joining them goes.
class Ledger : public std::enable_shared_from_this<Ledger> {
public:
    using Report = std::function<void(const Attempts &)>;

    /// One stream, counted as active from its making until its end.
    class Entry {
    public:
        explicit Entry(std::shared_ptr<Ledger> ledger);
        Entry(const Entry &) = delete;
        Entry &operator=(const Entry &) = delete;
        ~Entry() { close(CloseReason::failed, 0, 0); }

        Ledger &ledger() const { return *m_ledger; }
        /// It is over. Only the first call counts.
        void close(CloseReason reason, std::uint64_t bytesToTarget, std::uint64_t bytesToClient);

    private:
        std::shared_ptr<Ledger> m_ledger;
        bool m_isOpen = true;
    };

    /// Reports are made on that executor, which is one of a single thread.
    Ledger(boost::asio::any_io_executor reporting, Report report);

    /// From any thread. An empty text when it succeeded.
    void attempted(std::string problem);
    /// Nothing is reported any more. On the thread of the reports.
    void silence() { m_report = nullptr; }

    std::int64_t active() const { return m_active.load(std::memory_order_relaxed); }
    Tally tally() const;

private:
    void report();

    boost::asio::any_io_executor m_reporting;
    Report m_report;
    std::mutex m_mutex;
    Attempts m_attempts; // since the last report
    bool m_isReportDue = false;
    std::atomic<std::int64_t> m_active = 0;
    std::atomic<std::uint64_t> m_bytesToTarget = 0;
    std::atomic<std::uint64_t> m_bytesToClient = 0;
    std::array<std::atomic<std::uint64_t>, closeReasonCount> m_closed{};
};

} // namespace veranox
