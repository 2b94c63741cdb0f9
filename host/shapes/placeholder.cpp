#include "host/shapes/placeholder.h"

#include "host/shapes/palette.h"
#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

constexpr double hatchDistance = 8;
constexpr int mostHatches = 400;
constexpr int largestFont = 12;
constexpr int smallestFont = 8; // a longer text is elided

void drawHatches(QPainter& painter, const QRectF& rect)
{
    const double all = rect.width() + rect.height();
    const double distance = std::max(hatchDistance, all / mostHatches);
    painter.setPen(QPen(Palette::plate, 1));
    for (int i = 1; i * distance < all; ++i) {
        const double from = i * distance;
        const double below = std::max(0.0, from - rect.height()); // the line leaves at the left or at the bottom edge
        const double beside = std::max(0.0, from - rect.width());
        painter.drawLine(QPointF(rect.left() + below, rect.top() + from - below),
                         QPointF(rect.left() + from - beside, rect.top() + beside));
    }
}

} // namespace

const ShapeClass& Placeholder::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Placeholder"),
        Shape::withCommon({of<&Placeholder::m_text>("Text")}),
        [] { return std::unique_ptr<Shape>(new Placeholder); },
    };
    return self;
}

void Placeholder::draw(const ShapePainter& canvas) const
{
    drawBox(canvas, geometry(), m_text);
}

void Placeholder::drawBox(const ShapePainter& canvas, const QRectF& rect, const QString& text)
{
    QPainter& painter = canvas.painter();
    canvas.drawFrame(rect, Palette::paper, QColor());
    drawHatches(painter, rect);
    QPen pen(Palette::alarm, 1.5, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setDashPattern({4, 3});
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect.adjusted(0.75, 0.75, -0.75, -0.75));
    if (text.isEmpty())
        return;

    const double wanted = ShapePainter::textWidth({largestFont}, text) + 8;
    const double width = std::min(wanted, rect.width() - 4);
    const double height = std::min(largestFont * 1.4, rect.height());
    if (width <= 0)
        return;
    const int fontSize = std::clamp(static_cast<int>(largestFont * width / wanted), smallestFont, largestFont);
    const QRectF plate(rect.center().x() - width / 2, rect.center().y() - height / 2, width, height);
    canvas.drawFrame(plate, Palette::paper, QColor());
    canvas.drawText(plate.adjusted(1, 0, -1, 0), Qt::AlignCenter, {fontSize}, Palette::ink, text);
}
