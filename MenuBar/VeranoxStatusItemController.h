#pragma once
#include "Core/Jobs/Jobs.h"
#include "Core/MenuBarIcon.h"
#include "MenuBar/VeranoxMenuBarImage.h"
#include <QColor>
#include <QMenu>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>

class Appearance;
class StatusItem;
class VeranoxStore;

// The application's only permanent face: one icon that tells the health of the whole system, a tool tip that says it in
// words, and a context menu. Main thread only.
class VeranoxStatusItemController final : public QObject {
    Q_OBJECT

public:
    // store and appearance outlive the controller. requestQuit is called when the person asks to quit.
    VeranoxStatusItemController(jobs::MainQueue &queue, VeranoxStore &store, std::unique_ptr<StatusItem> statusItem,
        Appearance &appearance, std::function<void()> requestQuit);
    ~VeranoxStatusItemController() override;

    // Draws what the store says now. Nothing is drawn again that stands there already.
    void updateStatusButton();

    // The same, in a later turn of the event loop, once for all that asked meanwhile.
    void scheduleUpdate();

    // Pops the context menu up at a global point, else where the item stands, else at the pointer.
    void showContextMenu(std::optional<QPoint> where);

private:
    struct Shown { // what the item was last drawn from
        MenuBarIcon icon;
        double pulse;
        QColor foreground;
        bool operator==(const Shown &) const = default;
    };

    void handlePrimaryClick();
    jobs::Async<> reportMissingTray();
    QPoint menuPosition(std::optional<QPoint> where) const;

    VeranoxStore &m_store;
    std::unique_ptr<StatusItem> m_statusItem;
    Appearance &m_appearance;
    VeranoxMenuBarImage m_image;
    QMenu m_menu;
    std::optional<Shown> m_shown;
    QString m_shownTitle;
    bool m_updateScheduled = false;
    jobs::JobScope m_jobs;
};
