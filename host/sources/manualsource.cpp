#include "host/sources/manualsource.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

bool isState(double value)
{
    return value >= 0 && value <= std::numeric_limits<qint32>::max() && std::floor(value) == value;
}

} // namespace

ManualSource::ManualSource(std::vector<ObjectKey> objects, Clock clock, QObject* parent)
    : ValueSource(parent), m_objects(std::move(objects)), m_clock(std::move(clock))
{
}

ManualSource::~ManualSource() = default;

QString ManualSource::description() const
{
    return QStringLiteral("manual entry");
}

std::vector<ObjectKey> ManualSource::objects() const
{
    return m_objects;
}

void ManualSource::start(qint64)
{
    setState(State::Running);
}

void ManualSource::advance(qint64)
{
}

bool ManualSource::takesCommands(ObjectKey object) const
{
    return std::find(m_objects.begin(), m_objects.end(), object) != m_objects.end();
}

void ManualSource::write(const Command& command)
{
    const QString refusal = refusalOf(command);
    if (refusal.isEmpty())
        Q_EMIT delivered({{command.object, m_clock(), command.value, 0}});
    Q_EMIT commandAnswered(command.requestId, refusal);
}

QString ManualSource::refusalOf(const Command& command) const
{
    if (state() != State::Running)
        return QStringLiteral("%1 was not started").arg(description());
    if (!takesCommands(command.object))
        return QStringLiteral("%1 has no such point").arg(description());
    if (!std::isfinite(command.value))
        return QStringLiteral("%1 is no number").arg(command.value);
    if (command.object.type != Korvane::ScadaObjectType::AnalogPoint && !isState(command.value))
        return QStringLiteral("%1 is no state: a whole number from 0 on").arg(command.value);
    return {};
}
