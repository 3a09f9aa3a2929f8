#include "Profiles/VeranoxProfileRoutingSignature.h"

VeranoxProfileRoutingSignature::VeranoxProfileRoutingSignature(const VeranoxEditableProfile &profile)
    : backend(profile.backend),
      hostname(profile.hostname),
      suffixes(profile.suffixes),
      matchRoot(profile.matchRoot),
      acceptRoutes(profile.acceptRoutes),
      ipRoutes(profile.ipRoutes),
      stateDir(profile.stateDir),
      socket(profile.socket),
      httpProxy(profile.httpProxy),
      socks5Proxy(profile.socks5Proxy),
      port(profile.port)
{
}
