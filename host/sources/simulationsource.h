#pragma once

#include "host/hostexport.h"
#include "host/sources/sourcepoint.h"
#include "host/sources/valuesource.h"
#include "host/sources/waterloopmodel.h"

#include <vector>

/// Delivers what the instruments of a simulated water loop show, twice a second of the system's clock.
///
/// A signal feeds every point that has its name as its own or as its address; other points are not driven. The same seed
/// gives the same samples, counted from the start, however the ticks fall.
class KORVANE_HOST_EXPORT SimulationSource : public ValueSource
{
    Q_OBJECT

public:
    /// Between two samples of a point.
    static constexpr std::chrono::milliseconds sampleTime{500};
    /// Most samples of a point that one call of advance() delivers, an hour's; what is due beyond comes with the next.
    static constexpr int mostSamples = 7200;

    SimulationSource(quint32 seed, const std::vector<SourcePoint>& points, QObject* parent = nullptr);
    ~SimulationSource() override;

    QString description() const override;
    std::vector<ObjectKey> objects() const override;
    /// Begins at the model's beginning, also once more.
    void start(qint64 nowMs) override;
    void advance(qint64 nowMs) override;

private:
    struct Target
    {
        WaterLoopModel::Signal signal = WaterLoopModel::SignalCount;
        ObjectKey object;
    };

    quint32 m_seed;
    WaterLoopModel m_model;
    std::vector<Target> m_targets; ///< in the order of signals
    qint64 m_nextMs = 0;           ///< when the next samples are due
    std::vector<Sample> m_batch;
};
