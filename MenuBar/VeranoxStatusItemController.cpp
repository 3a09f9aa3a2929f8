#include "MenuBar/VeranoxStatusItemController.h"
#include "Core/VeranoxStore.h"
#include "MenuBar/VeranoxStoreRowOperations.h"
#include "Platform/StatusItem.h"
#include "Platform/SystemTheme.h"
#include <QClipboard>
#include <QCursor>
#include <QDesktopServices>
#include <QGuiApplication>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration trayGrace = 3s; // a desktop that is just starting brings its tray up meanwhile

constexpr auto placingGrace = 1s; // for a panel that is just taking the item in
constexpr auto placingCheck = 50ms; // no panel says when it has done so

} // namespace

VeranoxStatusItemController::VeranoxStatusItemController(jobs::MainQueue &queue, VeranoxStore &store,
    std::unique_ptr<StatusItem> statusItem, SystemTheme &theme, QmlEngine &engine, std::function<void()> requestQuit)
    : m_store(store),
      m_statusItem(std::move(statusItem)),
      m_theme(theme),
      m_requestQuit(std::move(requestQuit)),
      m_popover(queue, store, engine,
          {.dismissMenu = {},
              .requestQuit = [this] { confirmQuitFromMenu(); },
              .copyText = [](const QString &text) { QGuiApplication::clipboard()->setText(text); },
              .openAddress = [](const QUrl &address) { QDesktopServices::openUrl(address); },
              .tunnels = tunnelOperations(store),
              .publications = publicationOperations(store)}),
      m_jobs(queue)
{
    fillMenu();
    m_statusItem->setMenu(&m_menu);

    connect(m_statusItem.get(), &StatusItem::primaryActivated, this, &VeranoxStatusItemController::handlePrimaryClick);
    connect(m_statusItem.get(), &StatusItem::menuRequested, this,
        [this](QPoint where) { showContextMenu(where.isNull() ? std::nullopt : std::optional(where)); });
    connect(&m_theme, &SystemTheme::changed, this, &VeranoxStatusItemController::scheduleUpdate);
    connect(&m_store, &VeranoxStore::changed, this, &VeranoxStatusItemController::updateStatusButton); // once a turn
    updateStatusButton();
    m_jobs.start(reportMissingTray());
}

VeranoxStatusItemController::~VeranoxStatusItemController() = default;

void VeranoxStatusItemController::fillMenu()
{
    if (m_statusItem->showsOnlyMenu()) {
        connect(m_menu.addAction(u"Show Veranox"_s), &QAction::triggered, this, [this] { showPopover({}); });
        m_menu.addSeparator();
    }
    connect(m_menu.addAction(u"Quit Veranox…"_s), &QAction::triggered, this,
        &VeranoxStatusItemController::confirmQuitFromMenu);
}

void VeranoxStatusItemController::confirmQuitFromMenu()
{
    m_popoverWaits = false;
    m_popover.close();
    m_requestQuit();
}

void VeranoxStatusItemController::scheduleUpdate()
{
    if (std::exchange(m_updateScheduled, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_updateScheduled = false;
            updateStatusButton();
        },
        Qt::QueuedConnection);
}

void VeranoxStatusItemController::updateStatusButton()
{
    const Shown now{m_store.menuBarIcon(), m_store.menuBarPulse(), m_theme.panelForeground()};
    if (m_shown != now) {
        m_shown = now;
        m_statusItem->setIcon(m_image.image(now.icon, now.pulse, m_theme));
    }
    const QString title = u"Veranox — "_s + m_store.statusTitle();
    if (m_shownTitle != title) {
        m_shownTitle = title;
        m_statusItem->setToolTip(title);
        m_statusItem->setAccessibleName(title);
    }
}

jobs::Async<> VeranoxStatusItemController::reportMissingTray()
{
    co_await jobs::sleep(trayGrace);
    if (!m_statusItem->isAvailable())
        m_store.appendLog(u"[APP] this desktop shows no tray; the icon appears as soon as there is one"_s);
}

void VeranoxStatusItemController::handlePrimaryClick(QPoint where)
{
    if (m_popover.isShown())
        m_popover.close();
    else if (!m_popover.hasJustLostFocus()) // else this very click has closed it
        showPopover(where.isNull() ? std::nullopt : std::optional(where));
}

void VeranoxStatusItemController::showPopover(std::optional<QPoint> where)
{
    if (where || !m_statusItem->isBeingPlaced())
        openPopover(where);
    else if (!std::exchange(m_popoverWaits, true))
        m_jobs.start(openPopoverOncePlaced());
    m_store.requestRefresh();
}

void VeranoxStatusItemController::openPopover(std::optional<QPoint> where)
{
    m_popoverWaits = false;
    QRect icon = m_statusItem->geometry();
    if (icon.isEmpty() && where)
        icon = QRect(*where, QSize(1, 1));
    m_popover.show(icon);
}

jobs::Async<> VeranoxStatusItemController::openPopoverOncePlaced()
{
    for (auto waited = 0ms; waited < placingGrace && m_popoverWaits && m_statusItem->isBeingPlaced();
        waited += placingCheck)
        co_await jobs::sleep(placingCheck);
    if (m_popoverWaits) // else the person has opened it meanwhile, or asked for something else
        openPopover({});
}

void VeranoxStatusItemController::showContextMenu(std::optional<QPoint> where)
{
    m_popoverWaits = false;
    m_popover.close(); // one thing at the icon at a time, also where the desktop leaves the focus with it
    m_menu.popup(menuPosition(where));
}

QPoint VeranoxStatusItemController::menuPosition(std::optional<QPoint> where) const
{
    if (where)
        return *where;
    const QRect item = m_statusItem->geometry();
    return item.isEmpty() ? QCursor::pos() : item.bottomLeft();
}
