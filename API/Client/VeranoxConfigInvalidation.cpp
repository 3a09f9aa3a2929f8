#include "API/Client/VeranoxConfigInvalidation.h"

VeranoxConfigInvalidation configInvalidation(VeranoxAPIWrite write)
{
    using enum VeranoxConfigInvalidation;
    switch (write) { // no default: a new write has to say where it stands
        // clang-format off
    case VeranoxAPIWrite::saveConfig:         return BeforeAndOnSuccess;
    case VeranoxAPIWrite::saveTunnel:         return BeforeAndAfter;
    case VeranoxAPIWrite::deleteTunnel:       return BeforeAndAfter;
    case VeranoxAPIWrite::startTunnel:        return BeforeAndAfter;
    case VeranoxAPIWrite::stopTunnel:         return BeforeAndAfter;
    case VeranoxAPIWrite::restartTunnel:      return Never; // unlike start and stop it leaves the document alone
    case VeranoxAPIWrite::setTunnelSecret:    return Never;
    case VeranoxAPIWrite::savePublication:    return BeforeAndAfter;
    case VeranoxAPIWrite::deletePublication:  return BeforeAndAfter;
    case VeranoxAPIWrite::startPublication:   return BeforeAndAfter;
    case VeranoxAPIWrite::stopPublication:    return BeforeAndAfter;
    case VeranoxAPIWrite::restartPublication: return Never;
    case VeranoxAPIWrite::login:              return Never;
    case VeranoxAPIWrite::logout:             return Never;
    case VeranoxAPIWrite::shutdown:           return Never;
    case VeranoxAPIWrite::submitFeedback:     return Never;
        // clang-format on
    }
    return BeforeAndAfter; // not reached
}

VeranoxConfigInvalidationScope::VeranoxConfigInvalidationScope(
    VeranoxConfigCache &cache, VeranoxConfigInvalidation rule)
    : m_cache(cache),
      m_rule(rule)
{
    if (m_rule != VeranoxConfigInvalidation::Never)
        m_cache.invalidate();
}

VeranoxConfigInvalidationScope::~VeranoxConfigInvalidationScope()
{
    using enum VeranoxConfigInvalidation;
    if (m_rule == BeforeAndAfter || (m_rule == BeforeAndOnSuccess && m_succeeded))
        m_cache.invalidate();
}
