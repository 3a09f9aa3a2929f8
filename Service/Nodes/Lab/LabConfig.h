#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Nodes/Lab/LabNetwork.h"

namespace veranox {

/// Adds the profiles, tunnels and publications that the lab file brings along to the document, under names that are
/// still free; what the document already holds stays as it is. True when something was added.
bool addLabConfig(const LabNetwork &network, ConfigDocument &document);

} // namespace veranox
