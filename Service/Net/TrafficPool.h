#pragma once
#include "Service/Net/TrafficThread.h"
#include <vector>

namespace veranox {

/// The threads on which streams are forwarded. Everything may be called from any thread, stop() from one other than
/// these.
class TrafficPool {
public:
    /// As many as this computer has use for, at most four: the rest of it belongs to those who talk to each other.
    static unsigned usualSize();

    /// `threads` is at least 1. The allowance must outlive it.
    TrafficPool(unsigned threads, PipeAllowance &pipes);
    TrafficPool(const TrafficPool &) = delete;
    TrafficPool &operator=(const TrafficPool &) = delete;
    /// Stops.
    ~TrafficPool();

    /// The thread that has the fewest streams at this moment.
    TrafficThread &leastLoaded();
    /// On every thread.
    void stopUnwanted();

    /// Ends all streams and all threads, within half a second whatever they wait for. Harmless when repeated; after it
    /// nothing runs any more.
    void stop();
    bool isStopped() const { return m_isStopped; }

private:
    std::vector<std::unique_ptr<TrafficThread>> m_threads;
    std::atomic<bool> m_isStopped = false;
};

} // namespace veranox
