#include "MenuBar/VeranoxStatusItemController.h"
#include "Core/VeranoxStore.h"
#include "Platform/Appearance.h"
#include "Platform/StatusItem.h"
#include <QCursor>

using namespace Qt::StringLiterals;

VeranoxStatusItemController::VeranoxStatusItemController(VeranoxStore &store, std::unique_ptr<StatusItem> statusItem,
    Appearance &appearance, std::function<void()> requestQuit)
    : m_store(store),
      m_statusItem(std::move(statusItem)),
      m_appearance(appearance)
{
    connect(m_menu.addAction(u"Quit Veranox…"_s), &QAction::triggered, this, std::move(requestQuit));
    m_statusItem->setMenu(&m_menu);

    connect(m_statusItem.get(), &StatusItem::primaryActivated, this, &VeranoxStatusItemController::handlePrimaryClick);
    connect(m_statusItem.get(), &StatusItem::menuRequested, this,
        [this](QPoint where) { showContextMenu(where.isNull() ? std::nullopt : std::optional(where)); });
    connect(&m_appearance, &Appearance::changed, this, &VeranoxStatusItemController::scheduleStoreDrivenUpdate);
    connect(&m_store, &VeranoxStore::changed, this, &VeranoxStatusItemController::scheduleStoreDrivenUpdate);
    updateStatusButton();
}

VeranoxStatusItemController::~VeranoxStatusItemController() = default;

void VeranoxStatusItemController::scheduleStoreDrivenUpdate()
{
    if (std::exchange(m_storeUpdateScheduled, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_storeUpdateScheduled = false;
            updateStatusButton();
        },
        Qt::QueuedConnection);
}

void VeranoxStatusItemController::updateStatusButton()
{
    const Shown now{m_store.menuBarIcon(), m_store.menuBarPulse(), m_appearance.panelForeground()};
    if (m_shown != now) {
        m_shown = now;
        m_statusItem->setIcon(m_image.image(now.icon, now.pulse, m_appearance));
    }
    const QString title = u"Veranox — "_s + m_store.statusTitle();
    if (m_shownTitle != title) {
        m_shownTitle = title;
        m_statusItem->setToolTip(title);
        m_statusItem->setAccessibleName(title);
    }
}

void VeranoxStatusItemController::handlePrimaryClick()
{
    m_store.requestRefresh();
}

void VeranoxStatusItemController::showContextMenu(std::optional<QPoint> where)
{
    m_menu.popup(menuPosition(where));
}

QPoint VeranoxStatusItemController::menuPosition(std::optional<QPoint> where) const
{
    if (where)
        return *where;
    const QRect item = m_statusItem->geometry();
    return item.isEmpty() ? QCursor::pos() : item.bottomLeft();
}
