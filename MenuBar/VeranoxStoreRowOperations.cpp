#include "MenuBar/VeranoxStoreRowOperations.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

namespace {

using TunnelTest = bool (*)(const VeranoxTunnel &);

// What the store says of a tunnel when it is not as wanted. The same failure twice leaves the same message, so that the
// tunnel itself is asked, too.
QString failureOf(const VeranoxStore &store, const QString &name, TunnelTest isAsWanted)
{
    const QList<VeranoxTunnel> &tunnels = store.tunnels();
    const auto tunnel = std::ranges::find(tunnels, name, &VeranoxTunnel::name);
    if (tunnel != tunnels.end() && isAsWanted(*tunnel))
        return {};
    const QString &message = store.lastActionMessage();
    return message.startsWith(u"Tunnel "_s + name + u": "_s) ? message : QString();
}

jobs::Async<QString> setTunnelEnabled(VeranoxStore *store, QString name, bool enabled)
{
    co_await store->setTunnelEnabled(name, enabled);
    const TunnelTest isOn = [](const VeranoxTunnel &tunnel) { return !tunnel.disabled; };
    const TunnelTest isOff = [](const VeranoxTunnel &tunnel) { return tunnel.disabled; };
    co_return failureOf(*store, name, enabled ? isOn : isOff);
}

jobs::Async<QString> restartTunnel(VeranoxStore *store, QString name)
{
    co_await store->restartTunnel(name);
    co_return failureOf(*store, name,
        [](const VeranoxTunnel &tunnel) { return tunnel.state != "error"_L1 && tunnel.lastError.isEmpty(); });
}

jobs::Async<QString> setPublicationEnabled(VeranoxStore *store, QString name, bool enabled)
{
    const VeranoxPublicationActionResult result = co_await store->setPublicationEnabled(name, enabled);
    co_return result.isSuccess() ? QString() : result.message;
}

jobs::Async<QString> restartPublication(VeranoxStore *store, QString name)
{
    const VeranoxPublicationActionResult result = co_await store->restartPublication(name);
    co_return result.isSuccess() ? QString() : result.message;
}

} // namespace

VeranoxRowOperations tunnelOperations(VeranoxStore &store)
{
    return {
        .setEnabled = [&store](const QString &name, bool enabled) { return setTunnelEnabled(&store, name, enabled); },
        .restart = [&store](const QString &name) { return restartTunnel(&store, name); },
    };
}

VeranoxRowOperations publicationOperations(VeranoxStore &store)
{
    return {
        .setEnabled = [&store](
                          const QString &name, bool enabled) { return setPublicationEnabled(&store, name, enabled); },
        .restart = [&store](const QString &name) { return restartPublication(&store, name); },
    };
}
