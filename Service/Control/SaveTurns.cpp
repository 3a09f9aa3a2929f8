#include "Service/Control/SaveTurns.h"

#include "Service/Text/Refusal.h"
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>

namespace veranox {

namespace asio = boost::asio;

asio::awaitable<SaveTurns::Turn> SaveTurns::take()
{
    if (!std::exchange(m_isTaken, true))
        co_return Turn(*this);
    if (m_waiting.size() >= m_mostWaiting)
        throw Refusal(Refusal::Kind::later, "Too many changes are waiting for the disk; try again in some seconds.");
    const auto bell = std::make_shared<Bell>(co_await asio::this_coro::executor, Bell::time_point::max());
    m_waiting.push_back(bell);
    co_await bell->async_wait(asio::as_tuple(asio::use_awaitable));
    co_return Turn(*this);
}

void SaveTurns::pass()
{
    while (!m_waiting.empty()) {
        const std::shared_ptr<Bell> next = m_waiting.front().lock();
        m_waiting.pop_front();
        if (next) {
            next->cancel();
            return;
        }
    }
    m_isTaken = false;
}

} // namespace veranox
