#pragma once
#include "Service/Nodes/NodeEngine.h"
#include "Service/Reports/PathTarget.h"
#include <cstdint>

namespace veranox {

/// What came of connecting to a target some times over.
struct PingResult {
    bool ok = false; // at least one succeeded
    std::string error; // of the last that failed, empty when ok
    std::chrono::microseconds took{0}; // the fastest that succeeded, otherwise all of them together
};

/// What came of asking a target for a page.
struct HttpResult {
    bool ok = false; // a whole answer came, whatever its status
    std::string url;
    std::string status; // "200 OK"
    unsigned statusCode = 0;
    std::string contentType;
    std::chrono::milliseconds total{0};
    std::chrono::milliseconds toHeaders{0};
    std::chrono::milliseconds toFirstByte{0};
    std::uint64_t bytesRead = 0;
    std::string error;
    std::string certificateProblem; // why this computer does not trust the host, in a few words; empty when it does
};

/// Connects up to `count` times through the node, in less than 4 seconds. The engine must outlive it.
boost::asio::awaitable<PingResult> ping(NodeEngine *nodes, std::string profile, PathTarget target, unsigned count);

/// Asks for the page of the target through the node, over TLS where its scheme is https, in less than 5.5 seconds. No
/// secret is sent, so a host that is not trusted is asked, too.
boost::asio::awaitable<HttpResult> probeHttp(NodeEngine *nodes, std::string profile, PathTarget target);

} // namespace veranox
