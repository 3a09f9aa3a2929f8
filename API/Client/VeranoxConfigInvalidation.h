#pragma once
#include "API/Client/VeranoxConfigCache.h"

// The writes of the control API.
enum class VeranoxAPIWrite {
    saveConfig,
    saveTunnel,
    deleteTunnel,
    startTunnel,
    stopTunnel,
    restartTunnel,
    setTunnelSecret,
    savePublication,
    deletePublication,
    startPublication,
    stopPublication,
    restartPublication,
    login,
    logout,
    shutdown,
    submitFeedback,
};

// When a write makes the kept configuration invalid.
enum class VeranoxConfigInvalidation {
    never,
    beforeAndOnSuccess, // a failure leaves what was fetched meanwhile
    beforeAndAfter, // after success and failure: the service may have acted all the same
};

VeranoxConfigInvalidation configInvalidation(VeranoxAPIWrite write);

// Invalidates the cache round one write: here at once, and at the end as the rule says. A write that never reached
// succeed() failed.
class VeranoxConfigInvalidationScope {
public:
    VeranoxConfigInvalidationScope(VeranoxConfigCache &cache, VeranoxConfigInvalidation rule);
    ~VeranoxConfigInvalidationScope();
    VeranoxConfigInvalidationScope(const VeranoxConfigInvalidationScope &) = delete;
    VeranoxConfigInvalidationScope &operator=(const VeranoxConfigInvalidationScope &) = delete;

    void succeed() { m_succeeded = true; }

private:
    VeranoxConfigCache &m_cache;
    const VeranoxConfigInvalidation m_rule;
    bool m_succeeded = false;
};
