#pragma once

#include "host/shapes/curvecolumns.h"
#include "host/shapes/curvereducer.h"
#include "host/shapes/palette.h"
#include "host/shapes/samplering.h"
#include "host/shapes/scaleticks.h"
#include "host/shapes/shape.h"
#include "host/shapes/shapeinput.h"

#include <QColor>
#include <QString>
#include <QStringList>
#include <QTimeZone>

#include <array>
#include <memory>
#include <vector>

struct TrendPlot;

/// Up to eight curves over time. The time axis is "Span" seconds long and ends at the newest sample.
///
/// Samples come from outside through addSample(), each curve's in order of time; a value that is no number leaves a
/// gap. "Minimum" and "Maximum" bound the values; where both are equal, the samples in sight do. A curve is told from
/// the others by its marks and by its number at its end, too, not by its colour alone.
///
/// Tells on a click inside the plot: onGraphClicked(xIndex, xPosition, yPosition), with the index of the nearest sample in
/// sight among those kept of its curve (-1 without any), the time there in milliseconds since 1970 and the value there;
/// and onXIndexSelected() behind it when the index is not the one clicked before.
class KORVANE_HOST_EXPORT Trend : public Shape, public ShapeInput
{
public:
    static constexpr int mostCurves = 8;
    static constexpr int mostSamples = 20000; ///< kept for each curve; the oldest go first

    Trend();
    ~Trend() override;

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

    /// Adds a sample in constant time. Left out are samples of other curves than 0 to 7, those older than the curve's
    /// newest and those beyond the year 9999.
    /// \param timeMs since 1970 in UTC
    /// \param value NaN for a gap
    void addSample(int curve, qint64 timeMs, double value);
    void clearSamples();
    /// Samples kept of \p curve (0 to 7), gaps counted as well.
    int sampleCount(int curve) const { return m_samples[std::size_t(curve)].size(); }

    ShapeInput* input() override { return this; }
    bool takesFocus() const override { return false; }
    void click(const QPointF& place) override;

private:
    static QVariant readColors(const Shape& shape);
    static bool writeColors(Shape& shape, const QVariant& value);

    int curveCount() const;
    QColor curveColor(int curve) const;
    const QTimeZone& zone() const;
    /// The newest sample's time; false without samples.
    bool newestTime(qint64& timeMs) const;
    /// The least and the greatest value in sight; false without any.
    bool valuesInSight(const TrendPlot& plot, double& least, double& greatest) const;

    QRectF drawHeader(const ShapePainter& painter, const QRectF& area, const TrendPlot& plot) const;
    QRectF drawLegend(const ShapePainter& painter, const QRectF& area) const;
    void scaleValues(TrendPlot& plot, const QRectF& area) const;
    void placeAxes(TrendPlot& plot, const QRectF& area) const;
    void drawValueAxis(const ShapePainter& painter, const TrendPlot& plot) const;
    void drawTimeAxis(const ShapePainter& painter, const TrendPlot& plot) const;
    void drawCurve(const ShapePainter& painter, const TrendPlot& plot, int curve) const;
    void strokeCurve(const ShapePainter& painter, int curve) const;
    void fillCurve(const ShapePainter& painter, const TrendPlot& plot, int curve) const;
    void drawMarks(const ShapePainter& painter, const TrendPlot& plot, int curve) const;
    void drawBadges(const ShapePainter& painter, const TrendPlot& plot) const;

    QString m_title;
    double m_span = 600;
    double m_minimum = 0;
    double m_maximum = 0;
    QStringList m_curveNames;
    QStringList m_curveColors; ///< names of colours; "" and missing ones for those of our own
    QColor m_gridColor{0xe1, 0xe5, 0xe9};
    QColor m_fillColor = Palette::paper;
    QColor m_lineColor = Palette::hairline;
    QColor m_textColor = Palette::ink;
    int m_fontSize = 11;
    bool m_showsLegend = true;
    QString m_timeZone; ///< IANA id; one that is empty or unknown stands for local time

    std::vector<SampleRing> m_samples;
    int m_selectedIndex = -1;

    // Buffers and what was drawn last.
    const std::unique_ptr<TrendPlot> m_drawn;
    mutable CurveReducer m_reducer;
    mutable CurveColumns m_columns;
    mutable std::vector<QPointF> m_polyline;
    mutable ScaleTicks m_ticks;
    mutable QTimeZone m_zone; ///< for m_zoneName; reading one from the system takes time
    mutable QString m_zoneName;
};
