#pragma once
#include "Base/Jobs/Clock.h"
#include "Base/Jobs/Inbox.h"
#include <deque>
#include <memory>

namespace jobs {

namespace detail {
class JobCore;
}

// The jobs of the main thread that can go on, first in, first out: every start and every wake-up passes through here,
// so no job runs inside its starter and the order of events is one. Hands the thread back to Qt every 4 ms.
// Main thread only. Lives longer than every job, and less long than the clock.
class MainQueue {
public:
    explicit MainQueue(Clock &clock);
    ~MainQueue();
    MainQueue(const MainQueue &) = delete;
    MainQueue &operator=(const MainQueue &) = delete;

    Clock &clock() const noexcept { return m_clock; }
    // Whether no job is waiting for its turn.
    bool idle() const noexcept { return m_ready.empty(); }
    // Runs all that can run without time passing: jobs, posted events, and what threads were asked to bring. For a
    // clock that is moved by hand; blocks while a thread works, and ends the program when it takes 10 s.
    void settle();

    // For the parts of this library.
    void ready(detail::JobCore &core);
    void forget(detail::JobCore &core) noexcept;
    const std::shared_ptr<detail::Inbox> &inbox() const noexcept { return m_inbox; }

private:
    class Receiver;
    enum class Slice { bounded, whole };
    void drain(Slice slice);
    void deliverMail();
    void runFirst();
    Clock &m_clock;
    std::unique_ptr<Receiver> m_receiver;
    std::shared_ptr<detail::Inbox> m_inbox;
    std::deque<detail::JobCore *> m_ready; // null where a job was destroyed meanwhile
    bool m_draining = false;
    bool m_posted = false;
};

} // namespace jobs
