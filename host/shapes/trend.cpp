#include "host/shapes/trend.h"

#include "host/shapes/curvelegend.h"
#include "host/shapes/curvemark.h"
#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"
#include "host/shapes/timeticks.h"
#include "host/shapes/trendplot_p.h"

#include <qwt_painter.h>

#include <QDateTime>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double inset = 6; // between the frame and what is in it
constexpr double tickLength = 4;
constexpr double gap = 3;             // between a mark and its text
constexpr double lineDistance = 1.35; // of texts, in font sizes
constexpr double curveWidth = 1.5;
constexpr int marksInSight = 5;                // of one curve
constexpr double mostWay = 8;                  // up and down, in widths of the plot, of a curve that is stroked
constexpr double leastPlot = 24;               // a smaller one is given the whole area, without axes
constexpr qint64 lastTimeMs = 253402300799999; // of the year 9999

const std::array<QColor, Trend::mostCurves> ownColors = {{
    {0x2b, 0x5f, 0x93},
    {0xa6, 0x5a, 0x14},
    {0x2f, 0x6f, 0x4e},
    {0x7a, 0x46, 0x96},
    {0x3a, 0x45, 0x50},
    {0x96, 0x3d, 0x6b},
    {0x1d, 0x74, 0x80},
    {0x6e, 0x64, 0x14},
}};

} // namespace

const ShapeClass& Trend::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Trend"),
        Shape::withCommon({
            of<&Trend::m_title>("Title"),
            of<&Trend::m_span, 1, 315360000>("Span"),
            of<&Trend::m_minimum>("Minimum"),
            of<&Trend::m_maximum>("Maximum"),
            of<&Trend::m_curveNames>("CurveNames"),
            {QLatin1String("CurveColors"), ShapeProperty::Kind::TextList, readColors, writeColors},
            of<&Trend::m_gridColor>("GridColor"),
            of<&Trend::m_fillColor>("FillColor"),
            of<&Trend::m_lineColor>("LineColor"),
            of<&Trend::m_textColor>("TextColor"),
            of<&Trend::m_fontSize, 4, 200>("FontSize"),
            of<&Trend::m_showsLegend>("ShowLegend"),
            of<&Trend::m_timeZone>("TimeZone"),
        }),
        [] { return std::unique_ptr<Shape>(new Trend); },
    };
    return self;
}

Trend::Trend()
    : Shape({360, 200}), m_samples(mostCurves, SampleRing(mostSamples)), m_drawn(std::make_unique<TrendPlot>())
{
}

Trend::~Trend() = default;

QVariant Trend::readColors(const Shape& shape)
{
    return static_cast<const Trend&>(shape).m_curveColors;
}

bool Trend::writeColors(Shape& shape, const QVariant& value)
{
    QStringList names;
    if (!ShapeProperties::convert(value, names))
        return false;
    const auto isColor = [](const QString& name) { return name.isEmpty() || QColor::isValidColor(name); };
    if (!std::all_of(names.cbegin(), names.cend(), isColor))
        return false;
    auto& self = static_cast<Trend&>(shape);
    if (names == self.m_curveColors)
        return true;
    self.m_curveColors = names;
    self.changed();
    return true;
}

void Trend::addSample(int curve, qint64 timeMs, double value)
{
    if (curve < 0 || curve >= mostCurves || timeMs < -lastTimeMs || timeMs > lastTimeMs)
        return;
    if (m_samples[std::size_t(curve)].add({timeMs, value}))
        changed();
}

void Trend::clearSamples()
{
    const auto isEmpty = [](const SampleRing& samples) { return samples.isEmpty(); };
    if (std::all_of(m_samples.begin(), m_samples.end(), isEmpty))
        return;
    for (SampleRing& samples : m_samples)
        samples.clear();
    m_selectedIndex = -1;
    changed();
}

int Trend::curveCount() const
{
    int count = std::min(m_curveNames.size(), mostCurves);
    for (int curve = count; curve < mostCurves; ++curve) {
        if (!m_samples[std::size_t(curve)].isEmpty())
            count = curve + 1;
    }
    return count;
}

QColor Trend::curveColor(int curve) const
{
    const QString name = m_curveColors.value(curve);
    return name.isEmpty() ? ownColors[std::size_t(curve)] : QColor(name);
}

const QTimeZone& Trend::zone() const
{
    if (m_zone.isValid() && m_zoneName == m_timeZone)
        return m_zone;
    m_zoneName = m_timeZone;
    m_zone = m_timeZone.isEmpty() ? QTimeZone::systemTimeZone() : QTimeZone(m_timeZone.toLatin1());
    if (!m_zone.isValid())
        m_zone = QTimeZone::systemTimeZone();
    return m_zone;
}

bool Trend::newestTime(qint64& timeMs) const
{
    bool hasTime = false;
    for (const SampleRing& samples : m_samples) {
        if (samples.isEmpty() || (hasTime && samples.newest().timeMs <= timeMs))
            continue;
        timeMs = samples.newest().timeMs;
        hasTime = true;
    }
    return hasTime;
}

bool Trend::valuesInSight(const TrendPlot& plot, double& least, double& greatest) const
{
    least = std::numeric_limits<double>::infinity();
    greatest = -least;
    const auto take = [&](double value) {
        if (!std::isfinite(value))
            return;
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    };
    for (const SampleRing& samples : m_samples) {
        take(samples.interpolated(plot.beginMs));
        for (int i = samples.firstFrom(plot.beginMs); i < samples.size(); ++i)
            take(samples.at(i).value);
    }
    return least <= greatest;
}

void Trend::draw(const ShapePainter& canvas) const
{
    canvas.drawFrame(geometry(), m_fillColor, m_lineColor);
    TrendPlot& plot = *m_drawn;
    plot = {};
    QRectF area = geometry().adjusted(inset, inset, -inset, -inset);
    if (area.width() < leastPlot || area.height() < leastPlot)
        return;

    plot.zone = zone();
    plot.hasTime = newestTime(plot.endMs);
    plot.beginMs = plot.endMs - std::llround(m_span * 1000);

    area = drawHeader(canvas, area, plot);
    if (m_showsLegend)
        area = drawLegend(canvas, area);
    scaleValues(plot, area);
    placeAxes(plot, area);
    if (plot.hasAxes) {
        drawValueAxis(canvas, plot);
        drawTimeAxis(canvas, plot);
    }
    canvas.drawFrame(plot.rect, QColor(), m_lineColor);
    if (!plot.hasTime) {
        canvas.drawText(plot.rect, Qt::AlignCenter, {m_fontSize}, m_textColor, QStringLiteral("--"));
        return;
    }

    QPainter& painter = canvas.painter();
    painter.save();
    painter.setClipRect(plot.rect, Qt::IntersectClip);
    for (int curve = 0; curve < mostCurves; ++curve)
        drawCurve(canvas, plot, curve);
    painter.restore();
    for (int curve = 0; curve < mostCurves && curveCount() > 1; ++curve)
        drawMarks(canvas, plot, curve);
    if (plot.hasBadges)
        drawBadges(canvas, plot);
}

/// The title, and the day at the end of the time axis. \returns what is left of \p area.
QRectF Trend::drawHeader(const ShapePainter& canvas, const QRectF& area, const TrendPlot& plot) const
{
    const double height = m_fontSize * lineDistance;
    if ((m_title.isEmpty() && !plot.hasTime) || area.height() < height + leastPlot)
        return area;
    QRectF row(area.left(), area.top(), area.width(), height);
    if (plot.hasTime) {
        const QString day =
            QDateTime::fromMSecsSinceEpoch(plot.endMs, plot.zone).toString(QStringLiteral("yyyy-MM-dd"));
        const double width = ShapePainter::textWidth({m_fontSize}, day) + 2;
        if (width < row.width() / 2) {
            canvas.drawText({row.right() - width, row.top(), width, height}, Qt::AlignRight | Qt::AlignVCenter,
                            {m_fontSize}, m_textColor, day);
            row.setRight(row.right() - width - inset);
        }
    }
    canvas.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, {m_fontSize, true}, m_textColor, m_title);
    return area.adjusted(0, height + gap, 0, 0);
}

QRectF Trend::drawLegend(const ShapePainter& canvas, const QRectF& area) const
{
    std::vector<CurveLegend::Entry> entries;
    for (int curve = 0; curve < curveCount() && !m_curveNames.isEmpty(); ++curve)
        entries.push_back({m_curveNames.value(curve), curveColor(curve)});
    return CurveLegend::draw(canvas, area, entries, m_fontSize, m_textColor, leastPlot);
}

void Trend::scaleValues(TrendPlot& plot, const QRectF& area) const
{
    plot.low = m_minimum;
    plot.high = m_maximum;
    if (m_minimum != m_maximum)
        return;
    if (!plot.hasTime || !valuesInSight(plot, plot.low, plot.high)) {
        plot.low = 0;
        plot.high = 1;
    }
    ScaleTicks::widen(plot.low, plot.high, static_cast<int>(area.height() / (m_fontSize * 2.5)));
}

void Trend::placeAxes(TrendPlot& plot, const QRectF& area) const
{
    const double badge = CurveLegend::badgeSize(m_fontSize);
    const double badges = curveCount() > 0 && area.height() > 2 * badge ? badge + gap : 0;
    const int most = static_cast<int>(area.height() / (m_fontSize * 2.5));
    double widest = 0;
    for (const ScaleTicks::Tick& tick : m_ticks.between(plot.low, plot.high, std::clamp(most, 1, 10)))
        widest = std::max(widest, ShapePainter::textWidth({m_fontSize}, tick.text));
    plot.textLeft = area.left();
    plot.rect =
        area.adjusted(widest + gap + tickLength, m_fontSize * 0.5, -badges, -tickLength - m_fontSize * lineDistance);
    plot.hasAxes = plot.rect.width() >= leastPlot && plot.rect.height() >= leastPlot;
    if (!plot.hasAxes)
        plot.rect = area.adjusted(0, 0, area.width() - badges >= leastPlot ? -badges : 0, 0);
    plot.hasBadges = badges > 0 && plot.rect.right() < area.right();

    plot.times.setScaleInterval(0, double(plot.endMs - plot.beginMs));
    plot.times.setPaintInterval(plot.rect.left(), plot.rect.right());
    plot.values.setScaleInterval(plot.low, plot.high);
    plot.values.setPaintInterval(plot.rect.bottom(), plot.rect.top());
}

void Trend::drawValueAxis(const ShapePainter& canvas, const TrendPlot& plot) const
{
    const double height = m_fontSize * 1.2;
    for (const ScaleTicks::Tick& tick : m_ticks.shown()) {
        const double y = plot.values.transform(tick.value);
        canvas.drawRule({plot.rect.left(), y}, {plot.rect.right(), y}, m_gridColor);
        canvas.drawRule({plot.rect.left() - tickLength, y}, {plot.rect.left(), y}, m_lineColor);
        const double right = plot.rect.left() - tickLength - gap;
        canvas.drawText({plot.textLeft, y - height / 2, right - plot.textLeft + 1, height},
                        Qt::AlignRight | Qt::AlignVCenter, {m_fontSize}, m_textColor, tick.text);
    }
}

void Trend::drawTimeAxis(const ShapePainter& canvas, const TrendPlot& plot) const
{
    if (!plot.hasTime)
        return;
    const double usual = ShapePainter::textWidth({m_fontSize}, QStringLiteral("00:00:00")) * 1.5;
    double free = geometry().left() + 2;
    for (const TimeTicks::Tick& tick :
         TimeTicks::between(plot.beginMs, plot.endMs, static_cast<int>(plot.rect.width() / usual), plot.zone)) {
        const double x = plot.times.transform(double(tick.timeMs - plot.beginMs));
        canvas.drawRule({x, plot.rect.top()}, {x, plot.rect.bottom()}, m_gridColor);
        canvas.drawRule({x, plot.rect.bottom()}, {x, plot.rect.bottom() + tickLength}, m_lineColor);
        const double width = ShapePainter::textWidth({m_fontSize}, tick.text) + 2;
        const double left = std::min(x - width / 2, geometry().right() - 2 - width);
        if (left < free)
            continue;
        free = left + width + gap;
        canvas.drawText({left, plot.rect.bottom() + tickLength, width, m_fontSize * lineDistance}, Qt::AlignCenter,
                        {m_fontSize}, m_textColor, tick.text);
    }
}

void Trend::drawCurve(const ShapePainter& canvas, const TrendPlot& plot, int curve) const
{
    const SampleRing& samples = m_samples[std::size_t(curve)];
    if (samples.isEmpty())
        return;
    QPainter& painter = canvas.painter();
    const QTransform& device = painter.deviceTransform();
    const double pixels = plot.rect.width() * std::max(std::hypot(device.m11(), device.m12()), 0.01);
    m_reducer.reduce(samples, plot.beginMs, plot.endMs, double(plot.endMs - plot.beginMs) / pixels);

    m_polyline.clear();
    double way = 0; // up and down
    for (const QPointF& point : m_reducer.points()) {
        m_polyline.push_back(plot.at(point.x(), point.y()));
        if (m_polyline.size() > 1)
            way += std::abs(m_polyline.back().y() - m_polyline[m_polyline.size() - 2].y());
    }
    const bool isDense = way > plot.rect.width() * mostWay || double(m_polyline.size()) > pixels;
    if (isDense && device.type() <= QTransform::TxScale)
        fillCurve(canvas, plot, curve);
    else
        strokeCurve(canvas, curve);
}

void Trend::strokeCurve(const ShapePainter& canvas, int curve) const
{
    QPainter& painter = canvas.painter();
    const double width = canvas.crispWidth(curveWidth);
    for (const CurveReducer::Run& run : m_reducer.runs()) {
        const QPointF* points = m_polyline.data() + run.first;
        if (run.count > 1) {
            painter.setPen(QPen(curveColor(curve), width, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
            QwtPainter::drawPolyline(&painter, points, run.count);
        } else { // a sample between two gaps
            painter.setPen(Qt::NoPen);
            painter.setBrush(curveColor(curve));
            painter.drawEllipse(*points, width, width);
        }
    }
}

void Trend::fillCurve(const ShapePainter& canvas, const TrendPlot& plot, int curve) const
{
    QPainter& painter = canvas.painter();
    const QTransform device = painter.deviceTransform();
    for (QPointF& point : m_polyline)
        point = device.map(point);
    const QRectF rect = device.mapRect(plot.rect) & QRectF(0, 0, painter.device()->width(), painter.device()->height());
    if (rect.isEmpty())
        return;
    m_columns.reset(qFloor(rect.left()), qCeil(rect.width()) + 1);
    for (const CurveReducer::Run& run : m_reducer.runs())
        m_columns.add(m_polyline.data() + run.first, run.count);

    const QTransform before = painter.worldTransform();
    painter.setWorldTransform(before * device.inverted());
    m_columns.draw(painter, std::max(1.0, curveWidth * device.m11()), curveColor(curve), qFloor(rect.top()),
                   qCeil(rect.bottom()));
    painter.setWorldTransform(before);
}

/// Marks lie at round times, each curve's at others, and move on with the curve.
void Trend::drawMarks(const ShapePainter& canvas, const TrendPlot& plot, int curve) const
{
    const SampleRing& samples = m_samples[std::size_t(curve)];
    const auto distanceMs = std::max<qint64>((plot.endMs - plot.beginMs) / marksInSight, mostCurves);
    const qint64 offsetMs = distanceMs * curve / mostCurves;
    qint64 timeMs = (plot.beginMs - offsetMs) / distanceMs * distanceMs + offsetMs;
    for (; timeMs <= plot.endMs; timeMs += distanceMs) {
        const double value = timeMs < plot.beginMs ? std::nan("") : samples.interpolated(timeMs);
        const QPointF place = plot.at(double(timeMs - plot.beginMs), value);
        if (std::isfinite(value) && plot.rect.contains(place))
            CurveMark::draw(canvas.painter(), curve, place, curveColor(curve));
    }
}

void Trend::drawBadges(const ShapePainter& canvas, const TrendPlot& plot) const
{
    std::vector<CurveLegend::Badge> badges;
    for (int curve = 0; curve < mostCurves; ++curve) {
        const SampleRing& samples = m_samples[std::size_t(curve)];
        int last = samples.size() - 1;
        while (last >= 0 && samples.at(last).timeMs >= plot.beginMs && !std::isfinite(samples.at(last).value))
            --last;
        if (last >= 0 && samples.at(last).timeMs >= plot.beginMs)
            badges.push_back({curve, plot.values.transform(samples.at(last).value), curveColor(curve)});
    }
    const QRectF column(plot.rect.right() + gap, plot.rect.top(), CurveLegend::badgeSize(m_fontSize),
                        plot.rect.height());
    CurveLegend::drawBadges(canvas, column, badges, m_fontSize);
}

// What the operator clicks is what he sees: the plot as it was drawn last, not as newer samples would have it.
void Trend::click(const QPointF& place)
{
    const TrendPlot& plot = *m_drawn;
    if (!plot.hasTime || !plot.rect.contains(place))
        return;
    const int index = plot.nearestSample(m_samples, place);
    const bool isOther = index != m_selectedIndex;
    m_selectedIndex = index;
    act(QStringLiteral("onGraphClicked"),
        {index, double(plot.beginMs) + plot.times.invTransform(place.x()), plot.values.invTransform(place.y())});
    if (isOther)
        act(QStringLiteral("onXIndexSelected"));
}
