// The ready queue of the main thread: jobs that can go on, and what other threads hand back.
#pragma once
#include "Core/Jobs/Clock.h"
#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace jobs {

namespace detail {
class JobCore;

class Delivery { // something that another thread hands to the main thread
public:
    virtual ~Delivery() = default;
    virtual void deliver() = 0; // main thread
};

// Outlives the queue, so that a late thread finds it closed instead of gone.
class Inbox {
public:
    void put(std::shared_ptr<Delivery> delivery); // any thread
    std::vector<std::shared_ptr<Delivery>> take();
    bool waitForMail(std::chrono::milliseconds limit);
    void open(QObject *receiver);
    void close();
    std::atomic<int> outstanding = 0; // thread hops on their way; a virtual clock stands still for them

private:
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::vector<std::shared_ptr<Delivery>> m_mail;
    QObject *m_receiver = nullptr;
};
} // namespace detail

class MainQueue {
public:
    explicit MainQueue(Clock &clock);
    ~MainQueue();
    MainQueue(const MainQueue &) = delete;
    MainQueue &operator=(const MainQueue &) = delete;

    Clock &clock() const noexcept { return m_clock; }
    bool idle() const noexcept { return m_ready.empty(); }
    // Tests: runs all that can run now, waits for thread hops, runs what they brought. Never waits for time.
    void settle();

    // used by jobs
    void ready(detail::JobCore &core);
    void forget(detail::JobCore &core) noexcept;
    const std::shared_ptr<detail::Inbox> &inbox() const noexcept { return m_inbox; }

private:
    class Receiver;
    void drain(bool bounded);
    Clock &m_clock;
    std::unique_ptr<Receiver> m_receiver;
    std::shared_ptr<detail::Inbox> m_inbox;
    std::deque<detail::JobCore *> m_ready; // FIFO; null where a job was destroyed meanwhile
    bool m_draining = false;
    bool m_posted = false;
};

} // namespace jobs
