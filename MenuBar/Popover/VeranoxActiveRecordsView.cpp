#include "MenuBar/Popover/VeranoxActiveRecordsView.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostRows = 6;

} // namespace

VeranoxActiveRecordsView::VeranoxActiveRecordsView(jobs::MainQueue &queue, VeranoxStore &store, QString noun,
    VeranoxRowOperations operations, std::function<void(const QString &)> copyText)
    : m_store(store),
      m_noun(std::move(noun)),
      m_commands(queue, std::move(operations), std::move(copyText))
{
    connect(&m_commands, &VeranoxRowCommands::changed, this, &VeranoxActiveRecordsView::show);
}

bool VeranoxActiveRecordsView::isCompact() const
{
    return m_overview.totalCount > mostRows;
}

QString VeranoxActiveRecordsView::countText() const
{
    return u"%1 %2"_s.arg(m_overview.totalCount).arg(m_noun);
}

VeranoxMenuRow::Surroundings VeranoxActiveRecordsView::surroundings(
    const QString &name, const QString &profile, bool isEditable) const
{
    const QList<VeranoxProfile> &profiles = m_store.profiles();
    const auto found = std::ranges::find(profiles, profile, &VeranoxProfile::name);
    return {.accent = found == profiles.end() ? QString() : found->profileAccentColor(),
        .isEditable = isEditable,
        .activity = m_commands.activity(name)};
}
