#include "Tunnels/VeranoxTunnelSSHAuth.h"

using namespace Qt::StringLiterals;

QString rawValue(VeranoxTunnelSSHAuth auth)
{
    switch (auth) {
    case VeranoxTunnelSSHAuth::agent:
        break;
    case VeranoxTunnelSSHAuth::key:
        return u"key"_s;
    case VeranoxTunnelSSHAuth::password:
        return u"password"_s;
    }
    return u"agent"_s;
}

VeranoxTunnelSSHAuth tunnelSSHAuth(const QString &word)
{
    for (const VeranoxTunnelSSHAuth auth : allVeranoxTunnelSSHAuths)
        if (word == rawValue(auth))
            return auth;
    return VeranoxTunnelSSHAuth::agent;
}
