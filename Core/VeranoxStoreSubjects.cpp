// What a person does with tunnels and publications, handed on to those who do it.
#include "Core/VeranoxStore.h"

jobs::Async<std::optional<QString>> VeranoxStore::saveTunnelDraft(VeranoxTunnelDraft draft)
{
    co_return (co_await m_tunnels.save(std::move(draft))).problem();
}

jobs::Async<std::optional<QString>> VeranoxStore::deleteTunnel(QString name)
{
    co_return (co_await m_tunnels.remove(std::move(name))).problem();
}

jobs::Async<VeranoxActionOutcome> VeranoxStore::restartTunnel(QString name)
{
    return m_tunnels.restart(std::move(name));
}

jobs::Async<VeranoxActionOutcome> VeranoxStore::setTunnelEnabled(QString name, bool enabled)
{
    return m_tunnels.setEnabled(std::move(name), enabled);
}

jobs::Async<VeranoxPublicationActionResult> VeranoxStore::savePublicationDraft(VeranoxPublicationDraft draft)
{
    return m_publications.save(std::move(draft));
}

jobs::Async<VeranoxPublicationActionResult> VeranoxStore::deletePublication(QString name)
{
    return m_publications.remove(std::move(name));
}

jobs::Async<VeranoxPublicationActionResult> VeranoxStore::restartPublication(QString name)
{
    return m_publications.restart(std::move(name));
}

jobs::Async<VeranoxPublicationActionResult> VeranoxStore::setPublicationEnabled(QString name, bool enabled)
{
    return m_publications.setEnabled(std::move(name), enabled);
}
