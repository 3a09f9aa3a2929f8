#include "MenuBar/VeranoxQuitConfirmationPresenter.h"
#include "Controls/QmlEngine.h"
#include "MenuBar/Popover/VeranoxQuitConfirmation.h"
#include "Platform/WindowPlacing.h"
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>

using namespace Qt::StringLiterals;

// Members die in the reverse order: what is drawn before what it is drawn from.
struct VeranoxQuitConfirmationPresenter::Panel {
    std::unique_ptr<VeranoxQuitConfirmation> confirmation;
    std::unique_ptr<QQuickWindow> window;
    std::unique_ptr<QQuickItem> content;
};

namespace {

void centre(QQuickWindow &window)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return; // the last one has gone while the panel was open
    const QRect room = screen->availableGeometry();
    window.setPosition(room.center() - QRect(QPoint(), window.size()).center());
}

} // namespace

VeranoxQuitConfirmationPresenter::VeranoxQuitConfirmationPresenter(QmlEngine &engine) : m_engine(engine) { }

VeranoxQuitConfirmationPresenter::~VeranoxQuitConfirmationPresenter() = default;

QQuickWindow *VeranoxQuitConfirmationPresenter::window() const
{
    return m_panel ? m_panel->window.get() : nullptr;
}

void VeranoxQuitConfirmationPresenter::present(VeranoxStore &store, std::function<void()> confirm)
{
    close();
    if (!QGuiApplication::primaryScreen())
        return;
    m_engine.engine(); // chooses how windows are drawn, and so comes before the first one
    m_panel = std::make_shared<Panel>();
    m_panel->confirmation = std::make_unique<VeranoxQuitConfirmation>(
        store,
        [this, confirm = std::move(confirm)] {
            const auto confirmed = confirm; // outlives the panel
            close();
            confirmed();
        },
        [this] { close(); });
    m_panel->window = std::make_unique<QQuickWindow>();
    QQuickWindow &window = *m_panel->window;
    window.setTitle(u"Quit Veranox"_s);
    window.setFlags(Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    window.setColor(Qt::transparent);
    m_panel->content = m_engine.create(QUrl(u"qrc:/Veranox/Popover/QuitConfirmation.qml"_s),
        {{u"confirmation"_s, QVariant::fromValue(m_panel->confirmation.get())},
            {u"blended"_s, platform::blendsWindows()}});
    QQuickItem &content = *m_panel->content;
    content.setParentItem(window.contentItem());
    const auto fit = [&window, &content] {
        content.setSize({content.implicitWidth(), content.implicitHeight()});
        window.resize(content.size().toSize());
        centre(window);
    };
    connect(&content, &QQuickItem::implicitHeightChanged, &window, fit);
    connect(&content, SIGNAL(moveRequested()), &window, SLOT(startSystemMove()));
    fit();
    window.show();
    window.raise();
    window.requestActivate();
    content.forceActiveFocus(Qt::PopupFocusReason);
}

void VeranoxQuitConfirmationPresenter::close()
{
    if (!m_panel)
        return;
    m_panel->window->hide();
    // The call may come out of the panel itself: it goes when that has returned.
    QMetaObject::invokeMethod(this, [panel = std::exchange(m_panel, {})] { }, Qt::QueuedConnection);
}
