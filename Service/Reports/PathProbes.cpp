#include "Service/Reports/PathProbes.h"

#include "Service/Reports/DialWithin.h"
#include <algorithm>

namespace veranox {

namespace asio = boost::asio;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::chrono::milliseconds pingTime{3500}; // for all attempts together

} // namespace

asio::awaitable<PingResult> ping(NodeEngine *nodes, std::string profile, PathTarget target, unsigned count)
{
    PingResult result;
    const auto begin = Clock::now();
    for (unsigned attempt = 0; attempt < std::clamp(count, 1U, 10U); ++attempt) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(begin + pingTime - Clock::now());
        if (left <= std::chrono::milliseconds(0))
            break;
        const auto attemptBegin = Clock::now();
        const DialResult dialled =
            co_await dialWithin(nodes, profile, {target.host, target.port}, std::min(left, longestDial));
        const auto took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - attemptBegin);
        if (dialled.socket)
            result.took = result.ok ? std::min(result.took, took) : took;
        else
            result.error = dialled.problem;
        result.ok = result.ok || dialled.socket.has_value();
    }
    if (result.ok)
        result.error.clear();
    else
        result.took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
    co_return result;
}

} // namespace veranox
