#include "Controls/FocusReveal.h"
#include <QGuiApplication>

void FocusReveal::setFlickable(QQuickItem *flickable)
{
    if (flickable == m_flickable)
        return;
    disconnect(m_windows);
    m_flickable = flickable;
    if (flickable)
        m_windows = connect(flickable, &QQuickItem::windowChanged, this, &FocusReveal::follow);
    follow(flickable ? flickable->window() : nullptr);
    Q_EMIT flickableChanged();
}

void FocusReveal::follow(QQuickWindow *window)
{
    disconnect(m_focus);
    if (!window)
        return;
    m_focus = connect(window, &QQuickWindow::activeFocusItemChanged, this, [this, window] {
        if (QGuiApplication::mouseButtons() == Qt::NoButton)
            reveal(window->activeFocusItem());
    });
}

void FocusReveal::reveal(const QQuickItem *focused)
{
    const auto *content = m_flickable ? m_flickable->property("contentItem").value<QQuickItem *>() : nullptr;
    if (!content || !focused || focused == content || !content->isAncestorOf(focused))
        return;
    const QRectF place = focused->mapRectToItem(content, QRectF(QPointF(), focused->size()));
    const double shown = m_flickable->property("contentY").toDouble();
    const double deepest = std::max(0.0, m_flickable->property("contentHeight").toDouble() - m_flickable->height());
    const double downTo = place.bottom() + m_room - m_flickable->height();
    const double upTo = place.top() - m_room;
    m_flickable->setProperty("contentY", std::clamp(std::min(std::max(shown, downTo), upTo), 0.0, deepest));
}
