#pragma once
#include "Service/Config/PortPlan.h"
#include "Service/Config/PublicationSettings.h"
#include "Service/Text/Refusal.h"
#include <string>
#include <vector>

namespace veranox {

/// Throws Refusal when the publication's target is no "host:port" of this computer, or is one of Veranox's own
/// listeners, `own`.
void checkPublishedTarget(const std::string &target, const std::vector<PortUse> &own);

/// The same for a port or a reach that there is not.
void checkPublishedPort(std::int64_t port);
void checkReach(const std::string &reach);

/// What refuses a publication whose endpoint another one has.
Refusal takenEndpoint(const PublicationSettings &publication, const std::string &other);

} // namespace veranox
