#include "MenuBar/Popover/VeranoxActivePublicationsView.h"
#include "Core/VeranoxStore.h"
#include "Publications/VeranoxPublicationOverview.h"

using namespace Qt::StringLiterals;

VeranoxActivePublicationsView::VeranoxActivePublicationsView(jobs::MainQueue &queue, VeranoxStore &store,
    VeranoxRowOperations operations, std::function<void(const QString &)> copyText)
    : VeranoxActiveRecordsView(queue, store, u"publications"_s, std::move(operations), std::move(copyText))
{
    follow(
        [&store] { return std::tuple(store.publications(), store.profiles(), store.publicationsUnavailableReason()); });
    VeranoxActivePublicationsView::show();
}

void VeranoxActivePublicationsView::show()
{
    const bool isEditable = !store().publicationsUnavailableReason();
    present(store().publications(), VeranoxPublicationOverview(store().publications()), isEditable);
}
