#include "Controls/SoftShadow.h"
#include <QPainter>

SoftShadow::SoftShadow(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    connect(this, &SoftShadow::changed, this, [this] { update(); });
}

void SoftShadow::paint(QPainter *painter)
{
    constexpr double drop = 1.0 / 6; // of the extent: the light comes from above
    const double shift = m_extent * drop;
    const double reach = m_extent - shift;
    const QRectF panel = QRectF(0, 0, width(), height()).adjusted(m_extent, m_extent, -m_extent, -m_extent);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    // One layer a pixel, each a little stronger inwards; together they fall off with the square of the distance.
    const int layers = qCeil(reach);
    for (int layer = 0; layer < layers; ++layer) {
        const double spread = reach - layer;
        const double weight = 2.0 * (layer + 1) / (layers * (layers + 1.0));
        painter->setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(m_strength * weight)));
        painter->drawRoundedRect(
            panel.adjusted(-spread, -spread + shift, spread, spread + shift), m_radius + spread, m_radius + spread);
    }
}
