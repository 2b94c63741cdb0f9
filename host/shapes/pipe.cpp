#include "host/shapes/pipe.h"

#include "host/shapes/shapepainter.h"

#include <QLineF>

#include <algorithm>
#include <cmath>

namespace {

constexpr double miterLimit = 3;        // bends down to 40 degrees keep their corner
constexpr double chevronDistance = 2.5; // in widths
constexpr int mostChevrons = 200;       // on one stretch; farther apart on longer ones

/// The colour as it looks nearer to the middle of the pipe, which the light falls on; \p share 1 for the middle.
QColor lit(const QColor& color, double share)
{
    return Palette::mixed(color, Palette::paper, 0.35 * share);
}

} // namespace

const ShapeClass& Pipe::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Pipe"),
        Shape::withCommon({
            pointsProperty(),
            widthProperty<2, 200>("Width"),
            of<&Pipe::m_fillColor>("FillColor"),
            of<&Pipe::m_lineColor>("LineColor"),
            of<&Pipe::m_flow>("Flow"),
        }),
        [] { return std::unique_ptr<Shape>(new Pipe); },
    };
    return self;
}

double Pipe::reach() const
{
    return width() * miterLimit / 2;
}

void Pipe::draw(const ShapePainter& canvas) const
{
    QPainter& painter = canvas.painter();
    const double wide = canvas.crispWidth(width());
    QPolygonF points = shownPoints();
    for (QPointF& point : points)
        point = canvas.crisp(point, width());

    // Strokes of falling width, one over the other: wall, content, and the light on it.
    const auto stroke = [&](const QColor& color, double strokeWidth) {
        if (!color.isValid() || strokeWidth <= 0)
            return;
        QPen pen(color, strokeWidth, Qt::SolidLine, Qt::FlatCap, Qt::SvgMiterJoin);
        pen.setMiterLimit(miterLimit);
        painter.setPen(pen);
        painter.drawPolyline(points);
    };
    painter.setBrush(Qt::NoBrush);
    const double inner = m_lineColor.isValid() ? wide - 2 * canvas.crispWidth(1) : wide;
    stroke(m_lineColor, wide);
    if (m_fillColor.isValid()) {
        stroke(m_fillColor, inner);
        stroke(lit(m_fillColor, 0.5), inner * 0.65);
        stroke(lit(m_fillColor, 1), inner * 0.3);
    }
    if (m_flow != 0)
        drawChevrons(canvas, points);
}

void Pipe::drawChevrons(const ShapePainter& canvas, const QPolygonF& points) const
{
    QPainter& painter = canvas.painter();
    const double size = width() * 0.32;
    const QColor color = m_fillColor.isValid() ? Palette::readableOn(lit(m_fillColor, 1)) : Palette::ink;
    painter.setPen(QPen(color, std::max(1.5, width() * 0.14), Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    for (int i = 1; i < points.size(); ++i) {
        const QLineF stretch(points.at(i - 1), points.at(i));
        const double length = stretch.length();
        if (length < width() * 1.5)
            continue; // between two bends; a chevron would stand in the corner
        const int count = std::clamp(static_cast<int>(length / (width() * chevronDistance)), 1, mostChevrons);
        const QPointF along((m_flow > 0 ? 1 : -1) * stretch.dx() / length * size,
                            (m_flow > 0 ? 1 : -1) * stretch.dy() / length * size);
        const QPointF across(-along.y(), along.x());
        for (int n = 0; n < count; ++n) {
            const QPointF tip = stretch.pointAt((n + 0.5) / count) + along / 2;
            const QPointF chevron[] = {tip - along + across, tip, tip - along - across};
            painter.drawPolyline(chevron, 3);
        }
    }
}
