#pragma once

#include "host/actions/tagaction.h"

/// Draws its values as the curves of a trend, one each, with the times of their records. Every record counts, changed or
/// not; one whose source failed, or that is invalid, leaves a gap. Fields that a record does not bring are drawn with the
/// time of the batch, when they changed.
class KORVANE_HOST_EXPORT TrendAction : public TagAction
{
    Q_DECLARE_TR_FUNCTIONS(TrendAction)

public:
    explicit TrendAction(TesselInterface* shape) : TagAction(shape) {}

    int type() const override { return TagAction::Trend; }
    QString name() const override;
    QStringList drivenProperties() const override;
    ScadaTagActionInterface* clone(TesselInterface* shape) const override;
    void applyToShape(bool force) override;

protected:
    bool updatePointValue(const QuorixData& data, Korvane::ScadaObjectType kind, unsigned int pointId) override;

private:
    struct Point
    {
        int curve;
        qint64 timeMs;
        double value; ///< NaN for a gap
    };
    void addPoint(int curve, qint64 timeMs, double value, bool isGap);

    std::vector<Point> m_waiting; ///< for the end of the batch
    std::vector<qint64> m_lastMs; ///< of each curve, the time up to which it is drawn
};
