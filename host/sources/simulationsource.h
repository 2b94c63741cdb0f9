#pragma once

#include "host/hostexport.h"
#include "host/sources/sourcepoint.h"
#include "host/sources/valuesource.h"
#include "host/sources/waterloopmodel.h"

#include <vector>

/// Delivers what the instruments of a simulated water loop show, twice a second of the system's clock.
///
/// A signal feeds every point that has its name as its own or as its address; other points are not driven. The same seed
/// gives the same samples, counted from the start, however the ticks fall. Commands to points of the signals that
/// WaterLoopModel takes commands to are answered at once and obeyed from the last tick's time on; a new start forgets
/// them.
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

    bool takesCommands(ObjectKey object) const override;
    /// The value comes with the next advance(), with its time unless a sample is due then anyway.
    bool readAgain(ObjectKey object) override;

private:
    struct Target
    {
        WaterLoopModel::Signal signal = WaterLoopModel::SignalCount;
        ObjectKey object;
    };

    void write(const Command& command) override;
    tl::expected<void, QString> order(const Command& command);
    void collect(std::size_t target, qint64 timeMs);
    void passTime(qint64 untilMs);

    quint32 m_seed;
    WaterLoopModel m_model;
    qint64 m_modelMs = 0;          ///< the model's time
    std::vector<Target> m_targets; ///< in the order of signals
    std::vector<bool> m_isAsked;   ///< by target: whether its value is to be read again
    qint64 m_nextMs = 0;           ///< when the next samples are due
    std::vector<Sample> m_batch;
};
