#include "MenuBar/Popover/VeranoxMenuView.h"
#include "Core/VeranoxStore.h"
#include "Profiles/VeranoxProfileOrder.h"
#include <mutex>

void qml_register_types_Veranox_Popover(); // made by the build

VeranoxMenuView::VeranoxMenuView(
    jobs::MainQueue &queue, VeranoxStore &store, const VeranoxMenuActions &actions, QObject *parent)
    : QObject(parent),
      m_store(store),
      m_actions(actions),
      m_header(store),
      m_banner(store),
      m_footer(queue, store, actions),
      m_tunnels(queue, store, actions.tunnels, actions.copyText),
      m_publications(queue, store, actions.publications, actions.copyText)
{
    static std::once_flag typesAreRegistered; // for the whole process
    std::call_once(typesAreRegistered, qml_register_types_Veranox_Popover);
    m_watches.add([&store] { return store.profiles(); }, [this] { showProfiles(); });
    follow(m_tunnels.commands());
    follow(m_publications.commands());
    showProfiles();
}

VeranoxMenuView::~VeranoxMenuView() = default;

bool VeranoxMenuView::hasProfiles() const
{
    return !m_store.profiles().isEmpty();
}

void VeranoxMenuView::dismiss() const
{
    m_actions.dismissMenu();
}

void VeranoxMenuView::showProfiles()
{
    QList<VeranoxActiveProfileRow> rows;
    for (const VeranoxProfile &profile : inSharedProfileOrder(m_store.profiles()))
        rows.append(VeranoxActiveProfileRow::of(profile));
    m_profiles.reconcile(rows);
    Q_EMIT changed();
}

void VeranoxMenuView::follow(VeranoxRowCommands &commands)
{
    connect(&commands, &VeranoxRowCommands::started, this, [this, &commands] { setFailure(commands, {}); });
    connect(&commands, &VeranoxRowCommands::finished, this,
        [this, &commands](const QString &failure) { setFailure(commands, failure); });
}

void VeranoxMenuView::setFailure(const VeranoxRowCommands &commands, const QString &failure)
{
    if (failure == m_failure && (failure.isEmpty() || &commands == m_failed))
        return;
    m_failure = failure;
    m_failed = &commands;
    Q_EMIT changed();
}

QString VeranoxMenuView::failureOf(const VeranoxRowCommands &commands) const
{
    return &commands == m_failed ? m_failure : QString();
}
