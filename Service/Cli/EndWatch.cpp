#include "Service/Cli/EndWatch.h"

#include <boost/asio/post.hpp>
#include <csignal>
#include <cstdlib>
#include <utility>

namespace veranox {

namespace asio = boost::asio;

EndWatch::EndWatch(
    std::chrono::milliseconds longest, std::function<void(int)> onSignal, std::function<void()> beforeCut)
    : m_longest(longest),
      m_onSignal(std::move(onSignal)),
      m_beforeCut(std::move(beforeCut)),
      m_signals(m_context, SIGINT, SIGTERM),
      m_timer(m_context)
{
    awaitSignal();
    m_thread = std::thread([this] { m_context.run(); });
}

EndWatch::~EndWatch()
{
    m_context.stop();
    m_thread.join();
}

void EndWatch::begin()
{
    asio::post(m_context, [this] { startTimer(); });
}

/// Once the end has begun, more signals change nothing.
void EndWatch::awaitSignal()
{
    m_signals.async_wait([this](const boost::system::error_code &failure, int number) {
        if (failure)
            return;
        startTimer();
        m_onSignal(number);
        awaitSignal();
    });
}

void EndWatch::startTimer()
{
    if (std::exchange(m_isEnding, true))
        return;
    m_timer.expires_after(m_longest);
    m_timer.async_wait([this](const boost::system::error_code &failure) {
        if (failure)
            return;
        m_beforeCut();
        std::_Exit(EXIT_SUCCESS);
    });
}

} // namespace veranox
