#include "MenuBar/Popover/VeranoxQuitConfirmation.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

VeranoxQuitConfirmation::VeranoxQuitConfirmation(
    VeranoxStore &store, std::function<void()> confirm, std::function<void()> cancel)
    : m_store(store),
      m_confirm(std::move(confirm)),
      m_cancel(std::move(cancel))
{
    m_watches.add([&store] { return store.isQuitting(); }, [this] { Q_EMIT changed(); });
}

QString VeranoxQuitConfirmation::text() const
{
    return u"The local router, PAC server, tunnels, and profile connections will stop. Your official Tailscale app and "
           "account are not affected."_s;
}

QString VeranoxQuitConfirmation::notice() const
{
    return u"Anything pointed at a Veranox endpoint — browser proxy, database clients on tunnel ports — loses "
           "connectivity until Veranox starts again."_s;
}

bool VeranoxQuitConfirmation::isQuitting() const
{
    return m_store.isQuitting();
}

QString VeranoxQuitConfirmation::confirmTitle() const
{
    return isQuitting() ? u"Quitting"_s : u"Quit Veranox"_s;
}

void VeranoxQuitConfirmation::confirm()
{
    if (!isQuitting())
        m_confirm();
}

void VeranoxQuitConfirmation::cancel()
{
    m_cancel();
}
