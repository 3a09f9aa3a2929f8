#include "MenuBar/Popover/VeranoxActivePublicationsView.h"
#include "Core/VeranoxStore.h"
#include "Publications/VeranoxPublicationOverview.h"

using namespace Qt::StringLiterals;

VeranoxActivePublicationsView::VeranoxActivePublicationsView(jobs::MainQueue &queue, VeranoxStore &store,
    VeranoxRowOperations operations, std::function<void(const QString &)> copyText)
    : VeranoxActiveRecordsView(queue, store, u"publications"_s, std::move(operations), std::move(copyText))
{
    connect(&store, &VeranoxStore::publicationsChanged, this, &VeranoxActivePublicationsView::show);
    connect(&store, &VeranoxStore::serviceStateChanged, this, &VeranoxActivePublicationsView::show);
    connect(&store, &VeranoxStore::isRestartingRouterChanged, this, &VeranoxActivePublicationsView::show);
    connect(&store, &VeranoxStore::isQuittingChanged, this, &VeranoxActivePublicationsView::show);
    VeranoxActivePublicationsView::show();
}

void VeranoxActivePublicationsView::show()
{
    const bool isEditable = !store().publicationsUnavailableReason();
    present(store().publications(), VeranoxPublicationOverview(store().publications()), isEditable);
}
