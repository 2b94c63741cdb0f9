#include "host/canvas/operation.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

using Kind = Operation::Kind;

constexpr std::array<std::pair<Kind, const char*>, 6> kindNames = {{
    {Kind::Select, "select"},
    {Kind::Operate, "operate"},
    {Kind::SetPoint, "setpoint"},
    {Kind::Raise, "raise"},
    {Kind::Lower, "lower"},
    {Kind::EnterValue, "enter"},
}};

template <typename Record>
bool isSame(const std::shared_ptr<Record>& a, const std::shared_ptr<Record>& b)
{
    return a && b ? a->isEqual(*b) : !a && !b;
}

} // namespace

bool Operation::isEqual(const Operation& other) const
{
    return kind == other.kind && tag == other.tag && value == other.value && key == other.key &&
           unknown == other.unknown && isSame(input.numberInputParam, other.input.numberInputParam) &&
           isSame(input.enumInputParam, other.input.enumInputParam);
}

QString Operation::kindName(Kind kind)
{
    return QLatin1String(kindNames[static_cast<std::size_t>(kind)].second);
}

std::optional<Operation::Kind> Operation::kindOf(const QString& name)
{
    const auto found = std::find_if(kindNames.begin(), kindNames.end(),
                                    [&name](const auto& entry) { return name == QLatin1String(entry.second); });
    return found == kindNames.end() ? std::nullopt : std::optional(found->first);
}

bool Operation::hasValue(Kind kind)
{
    return kind == Kind::Operate || kind == Kind::SetPoint || kind == Kind::EnterValue;
}

const Operation* Operations::of(const Shape* shape) const
{
    const auto found = m_operations.find(shape);
    return found == m_operations.end() ? nullptr : &found->second;
}

void Operations::set(const Shape* shape, const std::optional<Operation>& operation)
{
    m_unreadable.erase(shape);
    if (operation)
        m_operations[shape] = *operation;
    else
        m_operations.erase(shape);
}

QByteArray Operations::unreadable(const Shape* shape) const
{
    const auto found = m_unreadable.find(shape);
    return found == m_unreadable.end() ? QByteArray() : found->second;
}
