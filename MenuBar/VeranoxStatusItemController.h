#pragma once
#include "Base/Jobs/Jobs.h"
#include "Core/MenuBarIcon.h"
#include "MenuBar/Mark/VeranoxMenuBarImage.h"
#include "MenuBar/VeranoxMenuPopover.h"
#include <QColor>
#include <QMenu>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>

class SystemTheme;
class StatusItem;
class QmlEngine;
class VeranoxStore;

// The application's only permanent face: one icon that tells the health of the whole system, a tool tip that says it in
// words, the popover that a click opens, and a context menu. Main thread only.
class VeranoxStatusItemController final : public QObject {
    Q_OBJECT

public:
    // All that is referred to outlives the controller. requestQuit is called when the person asks to quit.
    VeranoxStatusItemController(jobs::MainQueue &queue, VeranoxStore &store, std::unique_ptr<StatusItem> statusItem,
        SystemTheme &theme, QmlEngine &engine, std::function<void()> requestQuit);
    ~VeranoxStatusItemController() override;

    // Draws what the store says now. Nothing is drawn again that stands there already.
    void updateStatusButton();

    // The same, in a later turn of the event loop, once for all that asked meanwhile.
    void scheduleUpdate();

    // Opens the popover beside the item, else at the point if one is given, else where icons usually are; and looks
    // what is new. While a panel is just taking the item in, the popover waits for that, a second at most.
    void showPopover(std::optional<QPoint> where);
    bool popoverIsShown() const { return m_popover.isShown(); }

    // Pops the context menu up at a global point, else where the item stands, else at the pointer.
    void showContextMenu(std::optional<QPoint> where);

private:
    struct Shown { // what the item was last drawn from
        MenuBarIcon icon;
        double pulse;
        QColor foreground;
        bool operator==(const Shown &) const = default;
    };

    void handlePrimaryClick(QPoint where);
    void confirmQuitFromMenu();
    void fillMenu();
    void openPopover(std::optional<QPoint> where);
    jobs::Async<> openPopoverOncePlaced();
    jobs::Async<> reportMissingTray();
    QPoint menuPosition(std::optional<QPoint> where) const;

    VeranoxStore &m_store;
    std::unique_ptr<StatusItem> m_statusItem;
    SystemTheme &m_theme;
    VeranoxMenuBarImage m_image;
    std::function<void()> m_requestQuit;
    VeranoxMenuPopover m_popover;
    QMenu m_menu;
    std::optional<Shown> m_shown;
    QString m_shownTitle;
    bool m_updateScheduled = false;
    bool m_popoverWaits = false; // for the item's place
    jobs::JobScope m_jobs;
};
