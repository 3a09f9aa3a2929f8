#pragma once
#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <thread>

namespace veranox {

/// Sees to it that this process ends soon after it was told to, whatever its other threads do or wait for: a disk that
/// hangs, an engine that does not come back. It has a thread of its own, on which it calls what it is given.
class EndWatch {
public:
    /// From now on SIGINT and SIGTERM call `onSignal` with their number. `longest` after the first of them, or after
    /// begin(), `beforeCut` is called and the process is gone, with status 0, unless this has been destroyed before.
    EndWatch(std::chrono::milliseconds longest, std::function<void(int)> onSignal, std::function<void()> beforeCut);
    EndWatch(const EndWatch &) = delete;
    EndWatch &operator=(const EndWatch &) = delete;
    ~EndWatch();

    /// The time to the end begins. Harmless when repeated; for any thread.
    void begin();

private:
    void awaitSignal();
    void startTimer();

    std::chrono::milliseconds m_longest;
    std::function<void(int)> m_onSignal;
    std::function<void()> m_beforeCut;
    boost::asio::io_context m_context{1};
    boost::asio::signal_set m_signals;
    boost::asio::steady_timer m_timer;
    bool m_isEnding = false; // for its thread
    std::thread m_thread;
};

} // namespace veranox
