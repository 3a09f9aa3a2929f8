#pragma once
#include "Service/Net/ConnectionLimits.h"
#include "Service/Net/StreamSocket.h"
#include <atomic>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/ssl/context.hpp>
#include <functional>
#include <memory>

namespace veranox {

/// Where a listener's connections lead, and on what terms.
struct Route {
    /// Makes what a connection is joined to, on the executor of whoever awaits it; called on any thread. Fails with a
    /// NetworkProblem. It is cancelled when nobody wants the answer any more; one that goes on all the same is left to
    /// itself.
    std::function<boost::asio::awaitable<StreamSocket>()> dial;
    /// Ends TLS here; none for connections that are forwarded as they are.
    std::shared_ptr<boost::asio::ssl::context> tls = nullptr;
    /// While it is true every connection is turned away with a reset; none when that can't be.
    std::shared_ptr<const std::atomic<bool>> turnsAway = nullptr;
    ConnectionLimits limits = {};
};

} // namespace veranox
