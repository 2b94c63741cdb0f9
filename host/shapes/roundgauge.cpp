#include "host/shapes/roundgauge.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <QtMath>

#include <algorithm>

namespace {

constexpr double firstAngle = 210; // of the scale's low end, counterclockwise from three o'clock
constexpr double sweep = 240;
constexpr double overrun = 0.02; // shares of the scale by which a needle passes its ends
constexpr int mostDecimals = 12;
constexpr int leastText = 6; // a dial for which the number would be smaller shows none

} // namespace

/// The dial's place: a circle, of which the lowest third is left out for number and name.
struct RoundGauge::Dial
{
    QPointF center;
    double radius = 0;
    int fontSize = 0;
    bool hasLimits = false;

    double band() const { return std::clamp(radius * 0.09, 1.0, 14.0); }
    /// The limits' rim, outside the band.
    double rim() const { return hasLimits ? band() / 2 : 0; }
    double inside() const { return radius - rim() - (hasLimits ? 1 : 0) - band(); }
    QPointF at(double share, double distance) const
    {
        const double angle = qDegreesToRadians(firstAngle - share * sweep);
        return {center.x() + distance * std::cos(angle), center.y() - distance * std::sin(angle)};
    }
    /// An arc that lies outside \p inner.
    void drawArc(QPainter& painter, const QColor& color, double from, double to, double inner, double width) const
    {
        if (!color.isValid() || from == to)
            return;
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::FlatCap));
        painter.setBrush(Qt::NoBrush);
        const double distance = inner + width / 2;
        painter.drawArc(QRectF(center.x() - distance, center.y() - distance, 2 * distance, 2 * distance),
                        qRound((firstAngle - from * sweep) * 16), qRound((from - to) * sweep * 16));
    }
};

const ShapeClass& RoundGauge::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = [] {
        std::vector<ShapeProperty> own = valueProperties();
        own.push_back(of<&RoundGauge::m_text>("Text"));
        own.push_back(of<&RoundGauge::m_unit>("Unit"));
        own.push_back(of<&RoundGauge::m_decimals, -1, mostDecimals>("Decimals"));
        own.push_back(of<&RoundGauge::m_fontSize, 4, 200>("FontSize"));
        return ShapeClass{QLatin1String("RoundGauge"), Shape::withCommon(own),
                          [] { return std::unique_ptr<Shape>(new RoundGauge); }};
    }();
    return self;
}

QString RoundGauge::shownValue() const
{
    if (!value())
        return QStringLiteral("--");
    const QString number =
        m_decimals < 0 ? QString::number(*value(), 'g', 6) : QString::number(*value(), 'f', m_decimals);
    return m_unit.isEmpty() ? number : number + QLatin1Char(' ') + m_unit;
}

void RoundGauge::draw(const ShapePainter& canvas) const
{
    const QRectF area = geometry();
    const double nameHeight = m_text.isEmpty() ? 0 : std::min(m_fontSize * 1.3, area.height() / 4);
    const double radius = std::max(1.0, std::min(area.width() / 2, (area.height() - nameHeight) / 1.8));
    const double left = area.height() - nameHeight - 1.8 * radius; // over, when the shape is narrow
    const Dial dial{{area.center().x(), area.top() + std::max(left, 0.0) / 2 + radius},
                    radius,
                    std::clamp(static_cast<int>(radius / 5), 1, m_fontSize),
                    hasLimits()};
    drawRim(canvas, dial);
    drawScale(canvas, dial);
    drawNeedle(canvas, dial);

    const int valueSize = std::clamp(static_cast<int>(radius / 3.6), 1, m_fontSize * 3 / 2);
    if (valueSize >= leastText)
        canvas.drawText({dial.center.x() - radius, dial.center.y() + radius * 0.48, 2 * radius, radius * 0.32},
                        Qt::AlignCenter, {valueSize, true}, isBeyondLimit() ? alarmColor() : textColor(), shownValue());
    if (nameHeight > 0)
        canvas.drawText({area.left(), dial.center.y() + radius * 0.8, area.width(), nameHeight}, Qt::AlignCenter,
                        {m_fontSize}, textColor(), m_text);
}

void RoundGauge::drawRim(const ShapePainter& canvas, const Dial& dial) const
{
    QPainter& painter = canvas.painter();
    dial.drawArc(painter, Palette::plate, 0, 1, dial.inside(), dial.band());
    if (value())
        dial.drawArc(painter, shownFill(), 0, std::clamp(share(), 0.0, 1.0), dial.inside(), dial.band());
    if (!hasLimits())
        return;
    const double low = std::clamp(shareOf(lowLimit()), 0.0, 1.0);
    const double high = std::clamp(shareOf(highLimit()), 0.0, 1.0);
    const bool isReversed = shareOf(lowLimit()) > shareOf(highLimit());
    dial.drawArc(painter, alarmColor(), isReversed ? 1 : 0, low, dial.radius - dial.rim(), dial.rim());
    dial.drawArc(painter, alarmColor(), high, isReversed ? 0 : 1, dial.radius - dial.rim(), dial.rim());
    painter.setPen(QPen(Palette::ink, std::max(1.0, dial.band() / 5), Qt::SolidLine, Qt::FlatCap));
    for (const double limit : {low, high})
        painter.drawLine(dial.at(limit, dial.radius), dial.at(limit, dial.inside()));
}

void RoundGauge::drawScale(const ShapePainter& canvas, const Dial& dial) const
{
    if (dial.fontSize < leastText - 1)
        return;
    const int most = std::clamp(static_cast<int>(dial.radius * 4 / (dial.fontSize * 3.2)), 2, 10);
    const double outer = dial.inside();
    const double inner = outer - std::max(2.0, dial.radius * 0.06);
    for (const ScaleTicks::Tick& tick : ticks(most)) {
        const double share = shareOf(tick.value);
        canvas.painter().setPen(QPen(lineColor(), std::max(1.0, dial.radius / 70), Qt::SolidLine, Qt::FlatCap));
        canvas.painter().drawLine(dial.at(share, outer), dial.at(share, inner));
        const double width = std::min(ShapePainter::textWidth({dial.fontSize}, tick.text) + 2, dial.radius);
        const double height = dial.fontSize * 1.2;
        // The text's box touches the circle within the marks with its nearest corner or side.
        const double angle = qDegreesToRadians(firstAngle - share * sweep);
        const double extent = std::abs(std::cos(angle)) * width / 2 + std::abs(std::sin(angle)) * height / 2;
        const QPointF middle = dial.at(share, inner - extent - 1);
        canvas.drawText({middle.x() - width / 2, middle.y() - height / 2, width, height}, Qt::AlignCenter,
                        {dial.fontSize}, textColor(), tick.text);
    }
}

void RoundGauge::drawNeedle(const ShapePainter& canvas, const Dial& dial) const
{
    QPainter& painter = canvas.painter();
    const double hub = std::max(1.0, dial.radius * 0.07);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Palette::ink);
    if (value()) {
        const double share = std::clamp(this->share(), -overrun, 1 + overrun);
        const double quarter = 90 / sweep;
        const QPointF side = dial.at(share + quarter, hub * 0.7) - dial.center;
        const QPointF needle[] = {dial.center + side, dial.at(share, dial.inside()), dial.center - side};
        painter.drawPolygon(needle, 3);
    }
    painter.drawEllipse(dial.center, hub, hub);
}
