#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Nodes/NodeStatus.h"
#include <boost/json/object.hpp>
#include <cstddef>

namespace veranox {

/// The profile at `index` of the document as the control API reports it, with everything filled in that the document
/// leaves to the service: host name, proxies and UDP port. Every key is always present; a UDP port that the system
/// picks is null.
boost::json::object profileRecord(const ConfigDocument &document, std::size_t index, const NodeStatus &status);

} // namespace veranox
