#include "MenuBar/Popover/VeranoxLogo.h"
#include "MenuBar/Mark/VeranoxMenuBarMark.h"
#include <QPainter>
#include <QQuickWindow>

VeranoxLogo::VeranoxLogo(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void VeranoxLogo::setForeground(const QColor &color)
{
    if (m_foreground == color)
        return;
    m_foreground = color;
    Q_EMIT foregroundChanged();
    update();
}

void VeranoxLogo::paint(QPainter *painter)
{
    // The outlines stand on whole pixels of the screen, not of the layout.
    const double scale = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const int pixels = qRound(std::min(width(), height()) * scale);
    const auto shapes = veranoxMenuBarShapes(MenuBarIcon::normal, pixels);
    const auto colors = veranoxMenuBarColors(MenuBarIcon::normal, 1, m_foreground, m_foreground);
    painter->scale(1 / scale, 1 / scale);
    const auto fill = [painter](const QPainterPath &shape, const QColor &color) {
        if (color.isValid())
            painter->fillPath(shape, color);
    };
    fill(shapes.input, colors.input);
    fill(shapes.branchUp, colors.branchUp);
    fill(shapes.branchDown, colors.branchDown);
    fill(shapes.live, colors.live);
    fill(shapes.muted, colors.muted);
    fill(shapes.node, colors.node);
}
