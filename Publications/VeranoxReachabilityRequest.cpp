#include "Publications/VeranoxReachabilityRequest.h"

std::optional<VeranoxReachabilityRequest> VeranoxReachabilityRequest::of(const VeranoxPublication &publication)
{
    if (!publication.reachability.hint)
        return std::nullopt;
    return VeranoxReachabilityRequest{.id = publication.name,
        .title = publication.displayName.isEmpty() ? publication.name : publication.displayName,
        .hint = *publication.reachability.hint};
}
