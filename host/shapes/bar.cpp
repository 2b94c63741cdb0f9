#include "host/shapes/bar.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

constexpr double tickLength = 4;
constexpr double tickGap = 3;   // between mark and text
constexpr double limitRoom = 8; // beside the bar, for the marks of its limits
constexpr double leastThickness = 4;

} // namespace

/// Where the bar lies in the geometry, said along its growth (from 0 at the low end) and across it.
struct Bar::Layout
{
    bool isVertical = true;
    QRectF trough;
    bool hasLimitRoom = false;
    double textRoom = 0; ///< across, behind the marks; 0 without a scale
    const std::vector<ScaleTicks::Tick>& ticks;

    double length() const { return isVertical ? trough.height() : trough.width(); }
    /// The point at \p share of the range, \p across units from the trough's edge that bears the scale.
    QPointF at(double share, double across) const
    {
        return isVertical ? QPointF(trough.right() + across, trough.bottom() - share * trough.height())
                          : QPointF(trough.left() + share * trough.width(), trough.bottom() + across);
    }
    /// The edge without a scale, measured away from the trough.
    QPointF atFarEdge(double share, double across) const
    {
        return isVertical ? QPointF(trough.left() - across, trough.bottom() - share * trough.height())
                          : QPointF(trough.left() + share * trough.width(), trough.top() - across);
    }
};

const ShapeClass& Bar::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = [] {
        std::vector<ShapeProperty> own = valueProperties();
        own.push_back(of<&Bar::m_orientation, Qt::Horizontal, Qt::Vertical>("Orientation"));
        own.push_back(of<&Bar::m_showsScale>("ShowScale"));
        own.push_back(of<&Bar::m_fontSize, 4, 200>("FontSize"));
        return ShapeClass{QLatin1String("Bar"), Shape::withCommon(own), [] { return std::unique_ptr<Shape>(new Bar); }};
    }();
    return self;
}

Bar::Layout Bar::layout() const
{
    const bool isVertical = m_orientation == Qt::Vertical;
    const QRectF whole = geometry();
    const double length = isVertical ? whole.height() : whole.width();
    const double breadth = isVertical ? whole.width() : whole.height();
    const int most = static_cast<int>(length / (m_fontSize * (isVertical ? 2.2 : 5)));
    const auto& marks = ticks(std::clamp(most, 1, 10));

    double scaleRoom = 0;
    double ends = 0; // room for half of the texts at both ends of the scale
    if (m_showsScale) {
        double widest = 0;
        for (const ScaleTicks::Tick& tick : marks)
            widest = std::max(widest, ShapePainter::textWidth({m_fontSize}, tick.text));
        scaleRoom = tickLength + tickGap + (isVertical ? widest + 1 : m_fontSize * 1.2);
        ends = isVertical ? m_fontSize * 0.5 : widest / 2;
    }
    const double limits = hasLimits() ? limitRoom : 0;
    if (breadth - scaleRoom - limits < leastThickness || length - 2 * ends < leastThickness)
        scaleRoom = ends = 0; // too narrow for a scale that could be read
    const double farRoom = breadth - scaleRoom - limits < leastThickness ? 0 : limits;

    const QRectF trough = isVertical ? whole.adjusted(farRoom, ends, -scaleRoom, -ends)
                                     : whole.adjusted(ends, farRoom, -ends, -scaleRoom);
    return {isVertical, trough, farRoom > 0, scaleRoom, marks};
}

void Bar::draw(const ShapePainter& canvas) const
{
    const Layout layout = this->layout();
    canvas.drawFrame(layout.trough, Palette::light, lineColor());
    if (value()) {
        const double share = std::clamp(this->share(), 0.0, 1.0);
        const double wall = lineColor().isValid() ? canvas.crispWidth(1) : 0;
        QRectF filled = layout.trough.adjusted(wall, wall, -wall, -wall);
        if (layout.isVertical)
            filled.setTop(filled.bottom() - share * filled.height());
        else
            filled.setWidth(share * filled.width());
        if (share > 0 && !filled.isEmpty())
            canvas.drawFrame(filled, shownFill(), QColor());
        drawOverrun(canvas, layout);
    } else {
        canvas.painter().setPen(QPen(lineColor(), 1));
        canvas.painter().drawLine(layout.trough.topLeft(), layout.trough.bottomRight());
        canvas.painter().drawLine(layout.trough.bottomLeft(), layout.trough.topRight());
    }
    if (layout.textRoom > 0)
        drawScale(canvas, layout);
    if (hasLimits()) {
        drawLimit(canvas, layout, lowLimit());
        drawLimit(canvas, layout, highLimit());
    }
}

void Bar::drawScale(const ShapePainter& canvas, const Layout& layout) const
{
    const double textFrom = tickLength + tickGap;
    double free = layout.isVertical ? geometry().bottom() + m_fontSize : geometry().left() - m_fontSize;
    for (const ScaleTicks::Tick& tick : layout.ticks) {
        const double share = shareOf(tick.value);
        canvas.drawRule(layout.at(share, 0), layout.at(share, tickLength), lineColor());
        const QPointF place = layout.at(share, textFrom);
        if (layout.isVertical) {
            const double high = m_fontSize * 1.2;
            if (place.y() + high / 2 > free)
                continue;
            free = place.y() - high / 2;
            canvas.drawText({place.x(), place.y() - high / 2, layout.textRoom - textFrom, high},
                            Qt::AlignLeft | Qt::AlignVCenter, {m_fontSize}, textColor(), tick.text);
        } else {
            const double wide = ShapePainter::textWidth({m_fontSize}, tick.text) + 2;
            if (place.x() - wide / 2 < free)
                continue;
            free = place.x() + wide / 2;
            canvas.drawText({place.x() - wide / 2, place.y(), wide, layout.textRoom - textFrom},
                            Qt::AlignHCenter | Qt::AlignVCenter, {m_fontSize}, textColor(), tick.text);
        }
    }
}

void Bar::drawLimit(const ShapePainter& canvas, const Layout& layout, double limit) const
{
    const double share = shareOf(limit);
    if (share < 0 || share > 1)
        return;
    canvas.drawRule(layout.at(share, 0), layout.atFarEdge(share, 0), Palette::ink); // seen before any fill
    const double half = std::min(limitRoom / 2, layout.length() / 8) / layout.length();
    const QPointF mark[] = {layout.atFarEdge(share, 0), layout.atFarEdge(share + half, limitRoom - 1),
                            layout.atFarEdge(share - half, limitRoom - 1)};
    if (!layout.hasLimitRoom)
        return;
    canvas.painter().setPen(Qt::NoPen);
    canvas.painter().setBrush(alarmColor());
    canvas.painter().drawPolygon(mark, 3);
}

void Bar::drawOverrun(const ShapePainter& canvas, const Layout& layout) const
{
    const double share = this->share();
    if (share >= 0 && share <= 1)
        return;
    const double thickness = layout.isVertical ? layout.trough.width() : layout.trough.height();
    const double half = std::min({thickness / 4, layout.length() / 6, 6.0});
    const double depth = 1.5 * half / layout.length();
    const double tip = share > 1 ? 1 - depth / 4 : depth / 4;
    const double base = share > 1 ? tip - depth : tip + depth;
    const double middle = -thickness / 2;
    const QPointF arrow[] = {layout.at(tip, middle), layout.at(base, middle - half), layout.at(base, middle + half)};
    canvas.painter().setPen(Qt::NoPen);
    canvas.painter().setBrush(share > 1 ? Palette::readableOn(shownFill()) : Palette::ink);
    canvas.painter().drawPolygon(arrow, 3);
}
