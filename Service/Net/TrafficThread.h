#pragma once
#include "Service/Net/Conduit.h"
#include "Service/Net/Turns.h"
#include <atomic>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <future>
#include <thread>

namespace veranox {

/// One of the threads on which streams are forwarded, with whatever its streams share.
class TrafficThread {
public:
    using Hook = boost::intrusive::list_base_hook<boost::intrusive::link_mode<boost::intrusive::auto_unlink>,
        boost::intrusive::tag<TrafficThread>>;

    /// A stream of this thread, and called on it.
    class Stream : public Hook {
    public:
        virtual ~Stream() = default;
        /// True once whatever it belongs to has been stopped.
        virtual bool isUnwanted() const = 0;
        /// Ends it at once. Must not throw.
        virtual void stop() = 0;
    };

    /// Counts one stream that has been handed to a thread, from any thread.
    class Load {
    public:
        explicit Load(TrafficThread &thread) : m_count(thread.m_streams) { m_count.fetch_add(1); }
        Load(const Load &) = delete;
        Load &operator=(const Load &) = delete;
        ~Load() { m_count.fetch_sub(1); }

    private:
        std::atomic<std::size_t> &m_count;
    };

    /// The allowance must outlive it.
    explicit TrafficThread(PipeAllowance &pipes);
    TrafficThread(const TrafficThread &) = delete;
    TrafficThread &operator=(const TrafficThread &) = delete;
    /// Drops whatever still waits.
    ~TrafficThread();

    boost::asio::io_context &context() { return m_context; }
    boost::asio::io_context::executor_type executor() { return m_context.get_executor(); }
    std::size_t streams() const { return m_streams.load(std::memory_order_relaxed); }

    /// On the thread itself.
    Conduits &conduits() { return *m_conduits; }
    Turns &turns() { return m_turns; }
    void add(Stream &stream) { m_list.push_back(stream); }

    /// Stops the streams that are unwanted, a few at a time so that the others go on meanwhile. From any thread.
    void stopUnwanted();
    /// Stops all and lets the thread run out of work.
    void beginToEnd();
    /// Waits until then for the thread, ends it, and drops whatever still waits there.
    void end(std::chrono::steady_clock::time_point deadline);

private:
    using List =
        boost::intrusive::list<Stream, boost::intrusive::base_hook<Hook>, boost::intrusive::constant_time_size<false>>;

    /// A context that drops whatever still waits while everything that it refers to is there.
    class Context : public boost::asio::io_context {
    public:
        using io_context::io_context;
        void dropRest() { shutdown(); }
    };

    void run();
    void stopSome(const std::shared_ptr<List> &rest);

    Context m_context{1};
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_work{m_context.get_executor()};
    std::unique_ptr<Conduits> m_conduits;
    Turns m_turns{m_context};
    List m_list;
    std::atomic<std::size_t> m_streams = 0;
    std::atomic<bool> m_isEnding = false;
    std::promise<void> m_end;
    std::thread m_thread;
};

} // namespace veranox
