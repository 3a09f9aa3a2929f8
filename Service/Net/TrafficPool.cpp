#include "Service/Net/TrafficPool.h"

#include <algorithm>

namespace veranox {

namespace {

/// What is stopped in order is done long before that; what is left has to be cut.
constexpr std::chrono::milliseconds longestEnd{300};

} // namespace

unsigned TrafficPool::usualSize()
{
    constexpr unsigned most = 4;
    return std::clamp(std::thread::hardware_concurrency(), 1U, most);
}

TrafficPool::TrafficPool(unsigned threads, PipeAllowance &pipes)
{
    for (unsigned i = 0; i < threads; ++i)
        m_threads.push_back(std::make_unique<TrafficThread>(pipes));
}

TrafficPool::~TrafficPool()
{
    stop();
}

TrafficThread &TrafficPool::leastLoaded()
{
    return **std::ranges::min_element(
        m_threads, {}, [](const std::unique_ptr<TrafficThread> &thread) { return thread->streams(); });
}

void TrafficPool::stopUnwanted()
{
    for (const auto &thread : m_threads)
        thread->stopUnwanted();
}

void TrafficPool::stop()
{
    if (m_isStopped.exchange(true))
        return;
    for (const auto &thread : m_threads)
        thread->beginToEnd();
    const auto deadline = std::chrono::steady_clock::now() + longestEnd;
    for (const auto &thread : m_threads)
        thread->end(deadline);
}

} // namespace veranox
