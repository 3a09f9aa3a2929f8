#include "MenuBar/Popover/VeranoxActiveTunnelsView.h"
#include "Core/VeranoxStore.h"
#include "Tunnels/VeranoxTunnelOverview.h"

using namespace Qt::StringLiterals;

VeranoxActiveTunnelsView::VeranoxActiveTunnelsView(jobs::MainQueue &queue, VeranoxStore &store,
    VeranoxRowOperations operations, std::function<void(const QString &)> copyText)
    : VeranoxActiveRecordsView(queue, store, u"tunnels"_s, std::move(operations), std::move(copyText))
{
    follow([&store] { return std::pair(store.tunnels(), store.profiles()); });
    VeranoxActiveTunnelsView::show();
}

void VeranoxActiveTunnelsView::show()
{
    present(store().tunnels(), VeranoxTunnelOverview(store().tunnels()), true);
}
