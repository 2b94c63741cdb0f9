#include "host/sources/simulationsource.h"

#include "host/sources/columnmap.h"

#include <algorithm>

SimulationSource::SimulationSource(quint32 seed, const std::vector<SourcePoint>& points, QObject* parent)
    : ValueSource(parent), m_seed(seed), m_model(seed)
{
    const ColumnMap map(points);
    for (std::size_t signal = 0; signal < WaterLoopModel::SignalCount; ++signal) {
        for (const ColumnMap::Target& target : map.targets(WaterLoopModel::signalNames[signal]))
            m_targets.push_back({WaterLoopModel::Signal(signal), target.object});
    }
    m_isAsked.resize(m_targets.size());
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
    m_modelMs = nowMs;
    m_nextMs = nowMs;
    setState(State::Running);
}

void SimulationSource::advance(qint64 nowMs)
{
    if (state() != State::Running)
        return;
    m_batch.clear();
    for (int i = 0; i < mostSamples && m_nextMs <= nowMs; ++i) {
        passTime(m_nextMs);
        for (std::size_t target = 0; target < m_targets.size(); ++target)
            collect(target, m_nextMs);
        m_nextMs += sampleTime.count();
    }
    // What is still due comes first.
    if (m_nextMs > nowMs) {
        passTime(nowMs);
        for (std::size_t target = 0; target < m_targets.size(); ++target) {
            if (m_isAsked[target])
                collect(target, std::max(nowMs, m_nextMs - sampleTime.count()));
        }
    }
    if (!m_batch.empty())
        Q_EMIT delivered(m_batch);
}

/// Has the model take the steps that end by then.
void SimulationSource::passTime(qint64 untilMs)
{
    for (; m_modelMs + WaterLoopModel::stepTime.count() <= untilMs; m_modelMs += WaterLoopModel::stepTime.count())
        m_model.step();
}

void SimulationSource::collect(std::size_t target, qint64 timeMs)
{
    m_batch.push_back({m_targets[target].object, timeMs, m_model.value(m_targets[target].signal), 0});
    m_isAsked[target] = false;
}

bool SimulationSource::takesCommands(ObjectKey object) const
{
    return std::any_of(m_targets.begin(), m_targets.end(), [object](const Target& target) {
        return target.object == object && WaterLoopModel::takesCommands(target.signal);
    });
}

bool SimulationSource::readAgain(ObjectKey object)
{
    bool isKnown = false;
    for (std::size_t target = 0; target < m_targets.size(); ++target) {
        if (m_targets[target].object != object)
            continue;
        m_isAsked[target] = true;
        isKnown = true;
    }
    return isKnown;
}

void SimulationSource::write(const Command& command)
{
    const auto ordered = order(command);
    Q_EMIT commandAnswered(command.requestId, ordered ? QString() : ordered.error());
}

tl::expected<void, QString> SimulationSource::order(const Command& command)
{
    if (state() != State::Running)
        return tl::make_unexpected(QStringLiteral("%1 is not running").arg(description()));
    tl::expected<void, QString> ordered =
        tl::make_unexpected(QStringLiteral("%1 has no such point").arg(description()));
    for (const Target& target : m_targets) {
        if (target.object != command.object)
            continue;
        ordered = m_model.command(target.signal, command.value);
        if (WaterLoopModel::takesCommands(target.signal))
            break;
    }
    return ordered;
}
