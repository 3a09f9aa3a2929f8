#pragma once
#include <QObject>
#include <functional>
#include <memory>

class QQuickItem;
class QQuickWindow;
class QmlEngine;
class VeranoxQuitConfirmation;
class VeranoxStore;

// The panel that asks before everything stops: one at a time, above other windows, in the middle of the screen. Main
// thread only.
class VeranoxQuitConfirmationPresenter final : public QObject {
    Q_OBJECT

public:
    // The engine outlives the presenter.
    explicit VeranoxQuitConfirmationPresenter(QmlEngine &engine);
    ~VeranoxQuitConfirmationPresenter() override;

    // Asks; one that is open is closed first. confirm is called once the panel is closed, if the person says so. The
    // store outlives the panel.
    void present(VeranoxStore &store, std::function<void()> confirm);

    void close();
    QQuickWindow *window() const; // null while none is open

private:
    struct Panel;

    QmlEngine &m_engine;
    std::shared_ptr<Panel> m_panel;
};
