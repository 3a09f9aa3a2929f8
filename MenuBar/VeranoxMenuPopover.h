#pragma once
#include "Base/Jobs/Jobs.h"
#include "MenuBar/Popover/VeranoxMenuActions.h"
#include <QObject>
#include <QQuickWindow>
#include <memory>
#include <optional>

class QQuickItem;
class QScreen;
class VeranoxMenuView;
class QmlEngine;
class VeranoxStore;

// The window of the popover. It is made when it is first shown and kept. Beside the icon it closes when the focus
// leaves it; where the desktop lets no window choose its place it is an ordinary window. Main thread only.
class VeranoxMenuPopover final : public QObject {
    Q_OBJECT

public:
    // The queue, the store and the engine outlive the popover. Its dismissMenu is the popover's own.
    VeranoxMenuPopover(jobs::MainQueue &queue, VeranoxStore &store, QmlEngine &engine, VeranoxMenuActions actions);
    ~VeranoxMenuPopover() override;

    bool isShown() const;

    // Opens beside the icon: a rectangle in global coordinates, empty where nothing tells. Without a screen it stays
    // closed.
    void show(const QRect &icon);
    void close();

    // Whether the focus left it just now: the click that took the focus away is the one that the icon hears next.
    bool hasJustLostFocus() const;

    QQuickWindow *window() const { return m_window.get(); } // null before it is first shown

private:
    void make();
    void fit(); // to its content and the screen
    void place(const QScreen &screen);
    void handleActivation();
    jobs::Async<> closeUnlessFocusReturns(jobs::Clock::Time lostAt);
    QScreen *screenOf(const QRect &icon) const; // null without any

    jobs::MainQueue &m_queue;
    VeranoxStore &m_store;
    QmlEngine &m_engine;
    VeranoxMenuActions m_actions;
    std::unique_ptr<VeranoxMenuView> m_view;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<QQuickItem> m_content;
    QRect m_icon;
    bool m_isOrdinary = false;
    bool m_hasBeenActive = false; // since it was last shown
    std::optional<jobs::Clock::Time> m_lostFocusAt;
    jobs::JobScope m_jobs;
};
