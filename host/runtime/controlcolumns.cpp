#include "host/runtime/controlcolumns_p.h"

#include "platform/data/tagresolution.h"

#include <QStringList>

namespace {

using namespace PointColumns;
using Korvane::ScadaObjectType;
using Object = RuntimeDatabase::Object;
using Refused = PointLine::Refused;

constexpr int longestFeedbackSeconds = 3600;

// By the numbers of the enumerators.
const QStringList& kindNames()
{
    static const QStringList names = QStringLiteral("none direct select manual").split(QLatin1Char(' '));
    return names;
}

const QStringList& confirmationNames()
{
    static const QStringList names = QStringLiteral("none user second").split(QLatin1Char(' '));
    return names;
}

const QStringList& roleNames()
{
    static const QStringList names = [] {
        QStringList all;
        for (int role = 0; role <= static_cast<int>(AccountRole::Administrator); ++role)
            all.append(accountRoleName(static_cast<AccountRole>(role)));
        return all;
    }();
    return names;
}

template <typename Choice>
Refused readChoice(const PointLine& line, Column column, const QStringList& names, Choice& choice)
{
    const QString name = line.lowerCaseOf(column);
    if (name.isEmpty())
        return std::nullopt;
    const int place = names.indexOf(name);
    if (place < 0) {
        return line.refusal(column, QStringLiteral("%1 is not one of %2")
                                        .arg(csvQuoted(line.textOf(column)), names.join(QStringLiteral(", "))));
    }
    choice = static_cast<Choice>(place);
    return std::nullopt;
}

Refused readBounds(const PointLine& line, ControlSetting& control)
{
    if (auto refused = line.readNumber(ControlLowColumn, control.low))
        return refused;
    if (auto refused = line.readNumber(ControlHighColumn, control.high))
        return refused;
    // Comparing with a bound that is not there is false.
    if (control.low > control.high) {
        return line.refusal(
            ControlLowColumn,
            QStringLiteral("control_low %1 must not be above control_high %2").arg(control.low).arg(control.high));
    }
    return line.readPositive(ControlStepColumn, control.step);
}

Refused readFeedback(const PointLine& line, ControlSetting& control)
{
    if (auto refused = line.readText(FeedbackColumn, control.feedback))
        return refused;
    if (!control.feedback.isEmpty() && !Korvane::isAddressableName(control.feedback))
        return line.refusal(FeedbackColumn,
                            QStringLiteral("%1 can be no point's name").arg(csvQuoted(line.textOf(FeedbackColumn))));
    if (auto refused = line.readPositive(FeedbackToleranceColumn, control.tolerance))
        return refused;
    return line.readDuration(FeedbackTimeoutColumn, control.timeout, longestFeedbackSeconds);
}

Refused readParent(const PointLine& line, Object& object)
{
    if (auto refused = line.readText(ParentColumn, object.parent))
        return refused;
    if (object.parent.isEmpty())
        return std::nullopt;
    if (object.type == ScadaObjectType::ChannelObject)
        return line.refusal(ParentColumn, QStringLiteral("a line belongs to nothing"));
    const bool isUnit = object.type == ScadaObjectType::RtuObject;
    if (!Korvane::isAddressableName(object.parent,
                                    isUnit ? ScadaObjectType::ChannelObject : ScadaObjectType::RtuObject)) {
        return line.refusal(ParentColumn, QStringLiteral("%1 can be no %2's name")
                                              .arg(csvQuoted(line.textOf(ParentColumn)),
                                                   isUnit ? QStringLiteral("line") : QStringLiteral("unit")));
    }
    return std::nullopt;
}

} // namespace

Refused readControlColumns(const PointLine& line, Object& object)
{
    ControlSetting& control = object.control;
    if (auto refused = readParent(line, object))
        return refused;
    if (auto refused = readChoice(line, ControlColumn, kindNames(), control.kind))
        return refused;
    if (auto refused = readChoice(line, ControlRoleColumn, roleNames(), control.role))
        return refused;
    if (auto refused = readChoice(line, ControlConfirmColumn, confirmationNames(), control.confirmation))
        return refused;
    if (auto refused = line.readFlag(ControlReasonColumn, control.isReasonNeeded))
        return refused;
    if (auto refused = readBounds(line, control))
        return refused;
    if (auto refused = readFeedback(line, control))
        return refused;
    return line.readText(InterlockColumn, control.interlock);
}
