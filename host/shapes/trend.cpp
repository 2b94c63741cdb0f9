#include "host/shapes/trend.h"

#include "host/shapes/curvemark.h"
#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"
#include "host/shapes/timeticks.h"

#include <qwt_painter.h>
#include <qwt_scale_map.h>

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double inset = 6; // between the frame and what is in it
constexpr double tickLength = 4;
constexpr double gap = 3;             // between a mark and its text
constexpr double lineDistance = 1.35; // of texts, in font sizes
constexpr double curveWidth = 1.5;
constexpr double markSize = 7;
constexpr int marksInSight = 5;                    // of one curve
constexpr double leastPlot = 24;                   // a smaller one is given the whole area, without axes
constexpr double farAway = 10'000;                 // beside the plot; beyond that painting counts less exactly
constexpr qint64 lastTimeMs = 253'402'300'799'999; // of the year 9999

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

/// What is in sight, and where.
struct Trend::Plot
{
    bool hasTime = false;
    qint64 beginMs = 0;
    qint64 endMs = 0;
    double low = 0;
    double high = 1;
    QRectF rect;
    bool hasAxes = false;
    double textLeft = 0; ///< of the value axis
    QTimeZone zone;
    QwtScaleMap times; ///< milliseconds since beginMs to x
    QwtScaleMap values;

    QPointF at(double sinceBeginMs, double value) const
    {
        return {times.transform(sinceBeginMs),
                std::clamp(values.transform(value), rect.top() - farAway, rect.bottom() + farAway)};
    }
};

const ShapeClass& Trend::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Trend"),
        Shape::withCommon({
            of<&Trend::m_title>("Title"),
            of<&Trend::m_span, 1, 315'360'000>("Span"),
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

Trend::Trend() : Shape({360, 200}), m_samples(mostCurves, SampleRing(mostSamples))
{
}

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

bool Trend::valuesInSight(const Plot& plot, double& least, double& greatest) const
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
    QRectF area = geometry().adjusted(inset, inset, -inset, -inset);
    if (area.width() < leastPlot || area.height() < leastPlot)
        return;

    Plot plot;
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
    for (int curve = 0; curve < mostCurves; ++curve)
        drawMarks(canvas, plot, curve);
    painter.restore();
    drawBadges(canvas, plot);
}

/// The title, and the day at the end of the time axis. \returns what is left of \p area.
QRectF Trend::drawHeader(const ShapePainter& canvas, const QRectF& area, const Plot& plot) const
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

/// Number, mark and name of each curve, in columns of equal width. \returns what is left of \p area.
QRectF Trend::drawLegend(const ShapePainter& canvas, const QRectF& area) const
{
    const int count = curveCount();
    const double height = m_fontSize * lineDistance;
    const int mostRows = static_cast<int>((area.height() - leastPlot) / height / 2);
    if (count == 0 || mostRows < 1)
        return area;
    const double badge = m_fontSize * 1.2;
    const double before = badge + gap + markSize + gap;
    double widest = 0;
    for (int curve = 0; curve < count; ++curve)
        widest = std::max(widest, ShapePainter::textWidth({m_fontSize}, m_curveNames.value(curve)) + 1);
    const int fitting = std::clamp(static_cast<int>(area.width() / (before + widest + 2 * inset)), 1, count);
    const int columns = std::max(fitting, (count + mostRows - 1) / mostRows);
    const int rows = (count + columns - 1) / columns;
    const double width = columns > fitting ? area.width() / columns : before + widest + 2 * inset;

    for (int curve = 0; curve < count; ++curve) {
        const QRectF item(area.left() + curve % columns * width, area.top() + curve / columns * height, width, height);
        const double middle = item.center().y();
        CurveMark::drawBadge(canvas, curve, {item.left(), middle - badge / 2, badge, badge}, m_fontSize,
                             curveColor(curve));
        CurveMark::draw(canvas.painter(), curve, {item.left() + badge + gap + markSize / 2, middle}, markSize,
                        curveColor(curve));
        canvas.drawText(item.adjusted(before, 0, -gap, 0), Qt::AlignLeft | Qt::AlignVCenter, {m_fontSize}, m_textColor,
                        m_curveNames.value(curve));
    }
    return area.adjusted(0, rows * height + gap, 0, 0);
}

void Trend::scaleValues(Plot& plot, const QRectF& area) const
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

void Trend::placeAxes(Plot& plot, const QRectF& area) const
{
    const double badges = curveCount() > 0 ? m_fontSize * 1.2 + gap : 0;
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

    plot.times.setScaleInterval(0, double(plot.endMs - plot.beginMs));
    plot.times.setPaintInterval(plot.rect.left(), plot.rect.right());
    plot.values.setScaleInterval(plot.low, plot.high);
    plot.values.setPaintInterval(plot.rect.bottom(), plot.rect.top());
}

void Trend::drawValueAxis(const ShapePainter& canvas, const Plot& plot) const
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

void Trend::drawTimeAxis(const ShapePainter& canvas, const Plot& plot) const
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

void Trend::drawCurve(const ShapePainter& canvas, const Plot& plot, int curve) const
{
    const SampleRing& samples = m_samples[std::size_t(curve)];
    if (samples.isEmpty())
        return;
    QPainter& painter = canvas.painter();
    const QTransform& device = painter.deviceTransform();
    const double pixels = plot.rect.width() * std::max(std::hypot(device.m11(), device.m12()), 0.01);
    m_reducer.reduce(samples, plot.beginMs, plot.endMs, double(plot.endMs - plot.beginMs) / pixels);

    m_polyline.clear();
    for (const QPointF& point : m_reducer.points())
        m_polyline.push_back(plot.at(point.x(), point.y()));
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

/// Marks lie at round times, each curve's at others, and move on with the curve.
void Trend::drawMarks(const ShapePainter& canvas, const Plot& plot, int curve) const
{
    const SampleRing& samples = m_samples[std::size_t(curve)];
    const auto distanceMs = std::max<qint64>((plot.endMs - plot.beginMs) / marksInSight, mostCurves);
    const qint64 offsetMs = distanceMs * curve / mostCurves;
    qint64 timeMs = (plot.beginMs - offsetMs) / distanceMs * distanceMs + offsetMs;
    for (; timeMs <= plot.endMs; timeMs += distanceMs) {
        const double value = timeMs < plot.beginMs ? std::nan("") : samples.interpolated(timeMs);
        if (std::isfinite(value))
            CurveMark::draw(canvas.painter(), curve, plot.at(double(timeMs - plot.beginMs), value), markSize,
                            curveColor(curve));
    }
}

/// Each curve's number where it ends, or a little above or below where others end as well.
void Trend::drawBadges(const ShapePainter& canvas, const Plot& plot) const
{
    struct Badge
    {
        int curve;
        double middle;
    };
    std::array<Badge, mostCurves> badges{};
    std::size_t count = 0;
    const double size = m_fontSize * 1.2;
    const double top = plot.rect.top() + size / 2;
    const double bottom = std::max(top, plot.rect.bottom() - size / 2);
    for (int curve = 0; curve < mostCurves; ++curve) {
        const SampleRing& samples = m_samples[std::size_t(curve)];
        int last = samples.size() - 1;
        while (last >= 0 && samples.at(last).timeMs >= plot.beginMs && !std::isfinite(samples.at(last).value))
            --last;
        if (last < 0 || samples.at(last).timeMs < plot.beginMs)
            continue;
        badges[count++] = {curve, std::clamp(plot.values.transform(samples.at(last).value), top, bottom)};
    }
    if (plot.rect.right() + size > geometry().right())
        return;

    const auto end = badges.begin() + static_cast<std::ptrdiff_t>(count);
    std::stable_sort(badges.begin(), end, [](const Badge& a, const Badge& b) { return a.middle < b.middle; });
    for (std::size_t i = 1; i < count; ++i)
        badges[i].middle = std::max(badges[i].middle, badges[i - 1].middle + size);
    double lowest = bottom; // pushed back up from the lower edge
    for (std::size_t i = count; i-- > 0; lowest = badges[i].middle - size)
        badges[i].middle = std::min(badges[i].middle, lowest);
    for (std::size_t i = 0; i < count; ++i) {
        const double middle = std::max(badges[i].middle, top); // too many for the height lie one over the other
        CurveMark::drawBadge(canvas, badges[i].curve, {plot.rect.right() + gap, middle - size / 2, size, size},
                             m_fontSize, curveColor(badges[i].curve));
    }
}
