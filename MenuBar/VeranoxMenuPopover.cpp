#include "MenuBar/VeranoxMenuPopover.h"
#include "Controls/QmlEngine.h"
#include "MenuBar/Popover/VeranoxMenuView.h"
#include "MenuBar/PopoverPlacement.h"
#include "Platform/WindowPlacing.h"
#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum Surface { blended, plain, ordinary }; // as MenuPopover.qml counts them

constexpr jobs::Clock::Duration sameClick = 300ms; // between a press that takes the focus and its report by the panel
constexpr jobs::Clock::Duration focusSettles = 100ms; // desktops pass the focus around while windows come and go

} // namespace

VeranoxMenuPopover::VeranoxMenuPopover(
    jobs::MainQueue &queue, VeranoxStore &store, QmlEngine &engine, VeranoxMenuActions actions)
    : m_queue(queue),
      m_store(store),
      m_engine(engine),
      m_actions(std::move(actions)),
      m_jobs(queue)
{
    m_actions.dismissMenu = [this] { close(); };
}

VeranoxMenuPopover::~VeranoxMenuPopover() = default;

bool VeranoxMenuPopover::isShown() const
{
    return m_window && m_window->isVisible();
}

void VeranoxMenuPopover::make()
{
    m_isOrdinary = !platform::canPlaceWindows();
    m_engine.engine(); // chooses how windows are drawn, and so comes before the first one
    m_view = std::make_unique<VeranoxMenuView>(m_queue, m_store, m_actions);
    m_window = std::make_unique<QQuickWindow>();
    m_window->setObjectName(u"popoverWindow"_s);
    m_window->setTitle(u"Veranox"_s);
    if (!m_isOrdinary) {
        m_window->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        QSurfaceFormat format = m_window->format();
        format.setAlphaBufferSize(8); // bits
        m_window->setFormat(format);
    }
    m_window->setColor(Qt::transparent);
    m_content = m_engine.create(
        QUrl(u"qrc:/Veranox/Popover/MenuPopover.qml"_s), {{u"view"_s, QVariant::fromValue(m_view.get())}});
    m_content->setParentItem(m_window->contentItem());
    connect(m_content.get(), &QQuickItem::implicitHeightChanged, this, &VeranoxMenuPopover::fit);
    connect(m_window.get(), &QWindow::activeChanged, this, &VeranoxMenuPopover::handleActivation);
}

void VeranoxMenuPopover::show(const QRect &icon)
{
    const QScreen *screen = screenOf(icon);
    if (!screen)
        return;
    if (!m_window)
        make();
    m_icon = icon;
    m_lostFocusAt.reset();
    m_hasBeenActive = false;
    // Before the surface, which changes the height in turn: a height cannot be bounded while it is being worked out.
    m_view->presentation()->adoptScreen(screen->availableGeometry().height());
    const Surface surface = m_isOrdinary ? ordinary : platform::blendsWindows() ? blended : plain;
    m_content->setProperty("surface", static_cast<int>(surface));
    fit();
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
    if (QQuickItem *last = m_window->activeFocusItem()) // each opening starts at the top
        last->setFocus(false, Qt::PopupFocusReason);
    m_content->forceActiveFocus(Qt::PopupFocusReason);
}

void VeranoxMenuPopover::close()
{
    m_lostFocusAt.reset();
    if (m_window)
        m_window->hide();
}

bool VeranoxMenuPopover::hasJustLostFocus() const
{
    return m_lostFocusAt && m_queue.clock().now() - *m_lostFocusAt < sameClick;
}

void VeranoxMenuPopover::fit()
{
    const QScreen *screen = screenOf(m_icon);
    if (!screen)
        return; // the last one has gone while it was open
    m_view->presentation()->adoptScreen(screen->availableGeometry().height());
    const QSize size = QSizeF(m_content->implicitWidth(), m_content->implicitHeight()).toSize();
    m_content->setSize(size);
    if (m_isOrdinary) {
        m_window->setMinimumSize(size);
        m_window->setMaximumSize(size);
        m_window->resize(size);
        return;
    }
    place(*screen);
}

void VeranoxMenuPopover::place(const QScreen &screen)
{
    const int shadow = m_content->property("margin").toInt();
    const QMargins margins(shadow, shadow, shadow, shadow);
    const QSize size = m_content->size().toSize();
    const PanelSide side = panelSide(m_icon, screen.geometry(), screen.availableGeometry());
    const QPoint corner = popoverPosition(m_icon, screen.availableGeometry(), side, size.shrunkBy(margins));
    m_window->setGeometry(QRect(corner - QPoint(shadow, shadow), size));
}

QScreen *VeranoxMenuPopover::screenOf(const QRect &icon) const
{
    QScreen *screen = icon.isNull() ? nullptr : QGuiApplication::screenAt(icon.center());
    return screen ? screen : QGuiApplication::primaryScreen();
}

void VeranoxMenuPopover::handleActivation()
{
    if (m_isOrdinary || !m_window->isVisible())
        return;
    if (m_window->isActive()) {
        m_hasBeenActive = true;
        m_lostFocusAt.reset();
        return;
    }
    if (!m_hasBeenActive || m_lostFocusAt) // the desktop tells late of the time before, or tells twice
        return;
    m_lostFocusAt = m_queue.clock().now();
    m_jobs.start(closeUnlessFocusReturns(*m_lostFocusAt));
}

jobs::Async<> VeranoxMenuPopover::closeUnlessFocusReturns(jobs::Clock::Time lostAt)
{
    co_await jobs::sleep(focusSettles);
    if (m_lostFocusAt == lostAt && isShown())
        m_window->hide();
}
