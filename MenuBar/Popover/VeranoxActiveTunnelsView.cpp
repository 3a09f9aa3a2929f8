#include "MenuBar/Popover/VeranoxActiveTunnelsView.h"
#include "Core/VeranoxStore.h"
#include "MenuBar/Popover/VeranoxProfileAccents.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostRows = 6;

} // namespace

VeranoxActiveTunnelsView::VeranoxActiveTunnelsView(jobs::MainQueue &queue, VeranoxStore &store,
    VeranoxRowOperations operations, std::function<void(const QString &)> copyText)
    : m_store(store),
      m_actions(queue, std::move(operations), std::move(copyText))
{
    m_watches.add([&store] { return std::pair(store.tunnels(), store.profiles()); }, [this] { show(); });
    connect(&m_actions, &VeranoxMenuRowActions::changed, this, &VeranoxActiveTunnelsView::show);
    show();
}

bool VeranoxActiveTunnelsView::isCompact() const
{
    return m_overview.totalCount > mostRows;
}

QString VeranoxActiveTunnelsView::countText() const
{
    return u"%1 tunnels"_s.arg(m_overview.totalCount);
}

void VeranoxActiveTunnelsView::show()
{
    const VeranoxTunnelOverview overview(m_store.tunnels());
    const bool isNew = overview != std::exchange(m_overview, overview);
    QList<VeranoxMenuTunnelRow> rows;
    if (!isCompact()) {
        const VeranoxProfileAccents accents(m_store.profiles());
        for (const VeranoxTunnel &tunnel : m_store.tunnels())
            rows.append(VeranoxMenuTunnelRow::of(tunnel, accents.of(tunnel.profile), m_actions.activity(tunnel.name)));
    }
    m_rows.reconcile(rows);
    if (isNew)
        Q_EMIT changed();
}
