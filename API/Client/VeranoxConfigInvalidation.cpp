#include "API/Client/VeranoxConfigInvalidation.h"

VeranoxConfigInvalidation configInvalidation(VeranoxAPIWrite write)
{
    using enum VeranoxConfigInvalidation;
    switch (write) { // no default: a new write has to say where it stands
        // clang-format off
    case VeranoxAPIWrite::saveConfig:         return beforeAndOnSuccess;
    case VeranoxAPIWrite::saveTunnel:         return beforeAndAfter;
    case VeranoxAPIWrite::deleteTunnel:       return beforeAndAfter;
    case VeranoxAPIWrite::startTunnel:        return beforeAndAfter;
    case VeranoxAPIWrite::stopTunnel:         return beforeAndAfter;
    case VeranoxAPIWrite::restartTunnel:      return never; // unlike start and stop it leaves the document alone
    case VeranoxAPIWrite::setTunnelSecret:    return never;
    case VeranoxAPIWrite::savePublication:    return beforeAndAfter;
    case VeranoxAPIWrite::deletePublication:  return beforeAndAfter;
    case VeranoxAPIWrite::startPublication:   return beforeAndAfter;
    case VeranoxAPIWrite::stopPublication:    return beforeAndAfter;
    case VeranoxAPIWrite::restartPublication: return never;
    case VeranoxAPIWrite::login:              return never;
    case VeranoxAPIWrite::logout:             return never;
    case VeranoxAPIWrite::shutdown:           return never;
    case VeranoxAPIWrite::submitFeedback:     return never;
        // clang-format on
    }
    return beforeAndAfter; // not reached
}

VeranoxConfigInvalidationScope::VeranoxConfigInvalidationScope(
    VeranoxConfigCache &cache, VeranoxConfigInvalidation rule)
    : m_cache(cache),
      m_rule(rule)
{
    if (m_rule != VeranoxConfigInvalidation::never)
        m_cache.invalidate();
}

VeranoxConfigInvalidationScope::~VeranoxConfigInvalidationScope()
{
    using enum VeranoxConfigInvalidation;
    if (m_rule == beforeAndAfter || (m_rule == beforeAndOnSuccess && m_succeeded))
        m_cache.invalidate();
}
