#include "MenuBar/Mark/VeranoxMenuBarMark.h"

#include <QPainterPathStroker>
#include <cmath>

namespace {

// Measures of the mark in points, from its upper left corner.
constexpr double lineWidth = 2;
constexpr double inputStart = 0;
constexpr double nodeX = 8;
constexpr double middleY = 9;
constexpr double nodeRadius = 3;
constexpr double clearance = 1.25; // of the ring round node and badge that nothing else enters
constexpr double upperY = 3;
constexpr double branchSlope = 1.6; // rise over run
constexpr double bendLength = 1.7; // of either side of a branch's corner that is rounded off
constexpr double segmentStart = 13.5;
constexpr double segmentEnd = 20.5;
constexpr double crossReach = 1.75;
constexpr double badgeRadius = 2.5;
constexpr double badgeX = 18.25;
constexpr double badgeY = 15.5;

// Lays the mark out in pixels: lines get a whole width and sit on the grid.
class Layout {
public:
    explicit Layout(int pixels)
        : m_scale(static_cast<double>(pixels) / veranoxMenuBarIconSize),
          m_left(std::round((pixels - veranoxMenuBarMarkWidth * m_scale) / 2)),
          m_lineWidth(std::max(1.0, std::round(lineWidth * m_scale))),
          m_middleY(onLine(pixels / 2.0))
    {
    }

    double length(double points) const { return points * m_scale; }
    double width() const { return m_lineWidth; }
    double x(double points) const { return m_left + points * m_scale; }
    double edge(double points) const { return std::round(x(points)); }

    // A height, kept as far below the middle as its mirror image is above it.
    double y(double points) const { return m_middleY + (points - middleY) * m_scale; }

    // The height of the level end of a branch: the same whole number of pixels above or below the middle.
    double lineY(double points) const
    {
        const double distance = (points - middleY) * m_scale;
        return m_middleY + std::copysign(std::max(1.0, std::round(std::abs(distance))), distance);
    }

    // The middle of the node, whose left and right edges lie on whole pixels.
    QPointF node() const
    {
        const double diameter = std::round(2 * length(nodeRadius));
        return {std::round(x(nodeX) - diameter / 2) + diameter / 2, m_middleY};
    }
    QPointF badge() const { return {x(badgeX), y(badgeY)}; }

    QPainterPath disc(QPointF center, double radius) const
    {
        QPainterPath path;
        path.addEllipse(center, length(radius), length(radius));
        return path;
    }

    QPainterPath ring(QPointF center, double radius) const
    {
        QPainterPath path = disc(center, radius);
        const double hole = length(radius) - std::max(1.0, width() * 0.75);
        path.addEllipse(center, hole, hole);
        return path; // odd-even filling leaves the hole open
    }

    QPainterPath stroked(const QPainterPath &line, Qt::PenCapStyle cap = Qt::FlatCap) const
    {
        QPainterPathStroker stroker;
        stroker.setWidth(width());
        stroker.setCapStyle(cap);
        stroker.setJoinStyle(Qt::RoundJoin);
        return stroker.createStroke(line);
    }

private:
    // The middle of a line that covers whole pixels.
    double onLine(double value) const
    {
        const bool isOdd = std::fmod(m_lineWidth, 2) == 1;
        return isOdd ? std::floor(value) + 0.5 : std::round(value);
    }

    double m_scale;
    double m_left;
    double m_lineWidth;
    double m_middleY;
};

QPainterPath levelBar(double left, double right, double middle, double width)
{
    QPainterPath bar;
    bar.addRect(QRectF(QPointF(left, middle - width / 2), QPointF(right, middle + width / 2)));
    return bar;
}

// From the node up or down at a slope, then level to the segment.
QPainterPath branch(const Layout &layout, double levelY)
{
    const QPointF node = layout.node();
    const double rise = layout.lineY(levelY) - node.y();
    const QPointF corner = node + QPointF(std::abs(rise) / branchSlope, rise);
    const QPointF slope = (corner - node) / std::hypot(corner.x() - node.x(), rise);
    const double bend = layout.length(bendLength);
    QPainterPath line(node);
    line.lineTo(corner - slope * bend);
    line.quadTo(corner, corner + QPointF(bend, 0));
    line.lineTo(layout.edge(segmentEnd), corner.y());
    QPainterPath beyond;
    beyond.addRect(QRectF(layout.edge(segmentStart), 0, layout.length(veranoxMenuBarIconSize), 2 * node.y()));
    return layout.stroked(line).subtracted(beyond);
}

QPainterPath segment(const Layout &layout, double levelY)
{
    const double width = layout.width();
    const double left = layout.edge(segmentStart);
    const double right = layout.edge(segmentEnd);
    const QPainterPath bar = levelBar(left, right - width / 2, layout.lineY(levelY), width);
    QPainterPath cap;
    cap.addEllipse(QPointF(right - width / 2, layout.lineY(levelY)), width / 2, width / 2);
    return bar.united(cap);
}

// On its way: two dots stand for the segment.
QPainterPath dots(const Layout &layout, double levelY)
{
    const double size = layout.width();
    const double step = std::round(size * 1.5);
    const double top = layout.lineY(levelY) - size / 2;
    QPainterPath path;
    for (const int index : {0, 1})
        path.addEllipse(QRectF(layout.edge(segmentEnd) - size - index * step, top, size, size));
    return path;
}

// Broken: the segment ends in a cross.
QPainterPath cross(const Layout &layout, double levelY)
{
    const double reach = layout.length(crossReach);
    const QPointF center(layout.edge(segmentEnd) - reach - layout.width() / 2, layout.lineY(levelY));
    QPainterPath lines;
    lines.moveTo(center + QPointF(-reach, -reach));
    lines.lineTo(center + QPointF(reach, reach));
    lines.moveTo(center + QPointF(-reach, reach));
    lines.lineTo(center + QPointF(reach, -reach));
    return layout.stroked(lines, Qt::RoundCap).simplified();
}

} // namespace

VeranoxMenuBarMark<QPainterPath> veranoxMenuBarShapes(MenuBarIcon icon, int pixels)
{
    const Layout layout(pixels);
    const double lowerY = 2 * middleY - upperY;
    VeranoxMenuBarMark<QPainterPath> shapes{
        .input = levelBar(layout.edge(inputStart), layout.node().x(), layout.node().y(), layout.width()),
        .branchUp = branch(layout, upperY),
        .branchDown = branch(layout, lowerY),
        .node = layout.disc(layout.node(), nodeRadius),
        .live = segment(layout, lowerY),
        .muted = segment(layout, upperY),
        .badge = {},
    };
    if (icon == MenuBarIcon::offline)
        shapes.node = layout.ring(layout.node(), nodeRadius);
    if (icon == MenuBarIcon::starting)
        shapes.muted = dots(layout, upperY);
    if (icon == MenuBarIcon::failed)
        shapes.muted = cross(layout, upperY);

    const QPainterPath clearOfNode = layout.disc(layout.node(), nodeRadius + clearance);
    for (QPainterPath *line : {&shapes.input, &shapes.branchUp, &shapes.branchDown})
        *line = line->subtracted(clearOfNode);

    if (icon == MenuBarIcon::attention || icon == MenuBarIcon::failed) {
        shapes.badge = layout.disc(layout.badge(), badgeRadius);
        const QPainterPath clearOfBadge = layout.disc(layout.badge(), badgeRadius + clearance);
        for (QPainterPath *line : {&shapes.branchDown, &shapes.live})
            *line = line->subtracted(clearOfBadge);
    }
    return shapes;
}
