#include "MenuBar/Mark/VeranoxMenuBarImage.h"

#include "MenuBar/Mark/VeranoxMenuBarMark.h"
#include "Platform/SystemTheme.h"
#include <QIconEngine>
#include <QPainter>

namespace {

// Draws the mark anew for every size, instead of scaling a picture of it.
class MarkEngine : public QIconEngine {
public:
    MarkEngine(MenuBarIcon icon, const VeranoxMenuBarMark<QColor> &colors) : m_icon(icon), m_colors(colors) { }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        const int side = std::min(rect.width(), rect.height());
        const double ratio = painter->device()->devicePixelRatio();
        const auto shapes = veranoxMenuBarShapes(m_icon, qRound(side * ratio));
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft() + QPoint((rect.width() - side) / 2, (rect.height() - side) / 2));
        painter->scale(1 / ratio, 1 / ratio);
        for (const auto part : parts) {
            if ((m_colors.*part.color).isValid())
                painter->fillPath(shapes.*part.shape, m_colors.*part.color);
        }
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const double scale : {1.0, 1.5, 2.0})
            sizes << QSize(veranoxMenuBarIconSize, veranoxMenuBarIconSize) * scale;
        return sizes;
    }

    QIconEngine *clone() const override { return new MarkEngine(*this); }

private:
    using Colors = VeranoxMenuBarMark<QColor>;
    using Shapes = VeranoxMenuBarMark<QPainterPath>;
    struct Part {
        QColor Colors::*color;
        QPainterPath Shapes::*shape;
    };
    static constexpr Part parts[] = {
        {&Colors::input, &Shapes::input},
        {&Colors::branchUp, &Shapes::branchUp},
        {&Colors::branchDown, &Shapes::branchDown},
        {&Colors::node, &Shapes::node},
        {&Colors::live, &Shapes::live},
        {&Colors::muted, &Shapes::muted},
        {&Colors::badge, &Shapes::badge},
    };

    MenuBarIcon m_icon;
    Colors m_colors;
};

QIcon draw(MenuBarIcon icon, double pulse, const SystemTheme &theme, const QColor &ink)
{
    QIcon image(new MarkEngine(icon, veranoxMenuBarColors(icon, pulse, theme.panelForeground(), ink)));
    image.setIsMask(isVeranoxMenuBarTemplate(icon) && theme.colorsTemplateImages());
    return image;
}

} // namespace

QIcon VeranoxMenuBarImage::image(MenuBarIcon icon, double pulse, const SystemTheme &theme)
{
    const QColor ink = theme.colorsTemplateImages() ? QColor(Qt::black) : theme.panelForeground();
    if (icon != MenuBarIcon::offline)
        return draw(icon, pulse, theme, ink);
    if (!m_offline || m_offline->ink != ink)
        m_offline = Kept{ink, draw(icon, pulse, theme, ink)};
    return m_offline->image;
}
