#include "MenuBar/Popover/VeranoxActivePublicationsView.h"
#include "Core/VeranoxStore.h"
#include "MenuBar/Popover/VeranoxProfileAccents.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostRows = 6;

} // namespace

VeranoxActivePublicationsView::VeranoxActivePublicationsView(jobs::MainQueue &queue, VeranoxStore &store,
    VeranoxRowOperations operations, std::function<void(const QString &)> copyText)
    : m_store(store),
      m_actions(queue, std::move(operations), std::move(copyText))
{
    m_watches.add(
        [&store] { return std::tuple(store.publications(), store.profiles(), store.publicationsUnavailableReason()); },
        [this] { show(); });
    connect(&m_actions, &VeranoxMenuRowActions::changed, this, &VeranoxActivePublicationsView::show);
    show();
}

bool VeranoxActivePublicationsView::isCompact() const
{
    return m_overview.totalCount > mostRows;
}

QString VeranoxActivePublicationsView::countText() const
{
    return u"%1 publications"_s.arg(m_overview.totalCount);
}

void VeranoxActivePublicationsView::show()
{
    const VeranoxPublicationOverview overview(m_store.publications());
    const bool isNew = overview != std::exchange(m_overview, overview);
    QList<VeranoxMenuPublicationRow> rows;
    if (!isCompact()) {
        const VeranoxProfileAccents accents(m_store.profiles());
        const bool isEditable = !m_store.publicationsUnavailableReason();
        for (const VeranoxPublication &publication : m_store.publications())
            rows.append(VeranoxMenuPublicationRow::of(
                publication, accents.of(publication.profile), isEditable, m_actions.activity(publication.name)));
    }
    m_rows.reconcile(rows);
    if (isNew)
        Q_EMIT changed();
}
