#include "MenuBar/Popover/VeranoxMenuView.h"
#include "Core/VeranoxStore.h"
#include "Profiles/VeranoxProfileOrder.h"
#include <mutex>

void qml_register_types_Veranox_Popover(); // made by the build

VeranoxMenuView::VeranoxMenuView(
    jobs::MainQueue &queue, VeranoxStore &store, VeranoxMenuActions actions, QObject *parent)
    : QObject(parent),
      m_store(store),
      m_actions(actions),
      m_header(store),
      m_banner(store),
      m_footer(queue, store, std::move(actions))
{
    static std::once_flag typesAreRegistered; // for the whole process
    std::call_once(typesAreRegistered, qml_register_types_Veranox_Popover);
    connect(&m_store, &VeranoxStore::profilesChanged, this, &VeranoxMenuView::showProfiles);
    showProfiles();
}

VeranoxMenuView::~VeranoxMenuView() = default;

bool VeranoxMenuView::hasProfiles() const
{
    return !m_store.profiles().isEmpty();
}

void VeranoxMenuView::dismiss()
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
