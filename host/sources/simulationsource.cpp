#include "host/sources/simulationsource.h"

#include "host/sources/columnmap.h"

SimulationSource::SimulationSource(quint32 seed, const std::vector<SourcePoint>& points, QObject* parent)
    : ValueSource(parent), m_seed(seed), m_model(seed)
{
    const ColumnMap map(points);
    for (std::size_t signal = 0; signal < WaterLoopModel::SignalCount; ++signal) {
        for (const ColumnMap::Target& target : map.targets(WaterLoopModel::signalNames[signal]))
            m_targets.push_back({WaterLoopModel::Signal(signal), target.object});
    }
}

SimulationSource::~SimulationSource() = default;

QString SimulationSource::description() const
{
    return QStringLiteral("simulation of a water loop, seed %1, %2 points").arg(m_seed).arg(m_targets.size());
}

std::vector<ObjectKey> SimulationSource::objects() const
{
    std::vector<ObjectKey> objects;
    for (const Target& target : m_targets)
        objects.push_back(target.object);
    return objects;
}

void SimulationSource::start(qint64 nowMs)
{
    m_model = WaterLoopModel(m_seed);
    m_nextMs = nowMs;
    setState(State::Running);
}

void SimulationSource::advance(qint64 nowMs)
{
    if (state() != State::Running)
        return;
    constexpr auto stepsPerSample = sampleTime / WaterLoopModel::stepTime;
    m_batch.clear();
    for (int i = 0; i < mostSamples && m_nextMs <= nowMs; ++i) {
        for (const Target& target : m_targets)
            m_batch.push_back({target.object, m_nextMs, m_model.value(target.signal), 0});
        for (auto step = stepsPerSample; step > 0; --step)
            m_model.step();
        m_nextMs += sampleTime.count();
    }
    if (!m_batch.empty())
        Q_EMIT delivered(m_batch);
}
