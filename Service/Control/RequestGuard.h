#pragma once
#include "Service/Control/ControlAnswer.h"
#include "Service/Control/ControlRequest.h"
#include "Service/Control/ControlToken.h"
#include <cstdint>
#include <optional>

namespace veranox {

/// Keeps web pages and strangers away from the control API. A page that a browser shows reaches loopback too, under a
/// name of its own (its DNS made to point here) or across origins; its requests carry a Host, an Origin or, where they
/// only fetch an image, a script or a frame, a Sec-Fetch-Site that tell.
class RequestGuard {
public:
    RequestGuard(ControlToken token, std::uint16_t port);

    /// The refusal of a request that does not come from a program on this computer, or nothing. Only 403 stands for a
    /// wrong token, so this has other statuses.
    std::optional<ControlAnswer> checkSender(const ControlRequest &request) const;

    /// The refusal of a write without the right token, or nothing. Reads need none.
    std::optional<ControlAnswer> checkToken(const ControlRequest &request) const;

private:
    bool isOurHost(const std::string &host) const;
    bool isOurOrigin(const std::string &origin) const;

    ControlToken m_token;
    std::uint16_t m_port;
};

} // namespace veranox
