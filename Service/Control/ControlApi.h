#pragma once
#include "Service/Config/ConfigStore.h"
#include "Service/Control/ControlAnswer.h"
#include "Service/Control/ControlRequest.h"
#include "Service/Control/RequestGuard.h"
#include "Service/Files/UserFolders.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Nodes/Traffic.h"

namespace veranox {

/// The control API without its transport: one request in, one answer out. What it is given must outlive it.
class ControlApi {
public:
    ControlApi(const ConfigStore &config, const NodeEngine &nodes, Traffic &traffic, RequestGuard guard,
        Environment environment);

    /// What can be said before the body has come: the refusal of the sender, or nothing.
    std::optional<ControlAnswer> refuseEarly(const ControlRequest &request) const;

    ControlAnswer answer(const ControlRequest &request) const;

private:
    struct Route;
    static const Route routes[];

    ControlAnswer profiles() const;
    ControlAnswer config() const;
    ControlAnswer environment() const;
    ControlAnswer tunnels() const;
    ControlAnswer publications() const;
    ControlAnswer health() const;
    ControlAnswer shutdown() const;

    const ConfigStore &m_config;
    const NodeEngine &m_nodes;
    Traffic &m_traffic;
    RequestGuard m_guard;
    Environment m_environment;
};

} // namespace veranox
