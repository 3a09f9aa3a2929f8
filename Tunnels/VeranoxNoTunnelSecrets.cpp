#include "Tunnels/VeranoxNoTunnelSecrets.h"

VeranoxNoTunnelSecrets::VeranoxNoTunnelSecrets(QString problem) : m_problem(std::move(problem)) { }

jobs::Async<std::optional<QString>> VeranoxNoTunnelSecrets::password(QString /*tunnelName*/, Unlocking /*unlocking*/)
{
    co_return std::nullopt;
}

jobs::Async<bool> VeranoxNoTunnelSecrets::hasPassword(QString /*tunnelName*/)
{
    co_return false;
}

jobs::Async<bool> VeranoxNoTunnelSecrets::setPassword(QString password, QString /*tunnelName*/)
{
    co_return password.isEmpty();
}

jobs::Async<> VeranoxNoTunnelSecrets::deletePassword(QString /*tunnelName*/)
{
    co_return;
}
