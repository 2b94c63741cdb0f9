#include "host/control/controlrules.h"

#include "host/accounts/databasemanager.h"
#include "host/control/interlock.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/valuemarks.h"

#include <cmath>

namespace {

using Korvane::ScadaObjectType;
using Kind = ControlSetting::Kind;
using Operation = ControlOrder::Operation;
using Outcome = ControlRules::Outcome;
using Refusal = ControlRules::Refusal;

tl::unexpected<Refusal> refused(Outcome outcome, const QString& text)
{
    return tl::make_unexpected(Refusal{outcome, text});
}

bool isStep(Operation operation)
{
    return operation == Operation::Raise || operation == Operation::Lower;
}

} // namespace

const ControlSetting& ControlRules::settingOf(ObjectKey object) const
{
    static const ControlSetting none;
    const RuntimeDatabase::Object* found = m_database.object(object);
    return found ? found->control : none;
}

tl::expected<double, Refusal> ControlRules::check(const ControlOrder& order, const Asking& asking) const
{
    if (const auto permitted = checkRight(order); !permitted)
        return tl::make_unexpected(permitted.error());
    if (!order.isCommand())
        return 0;
    const ControlSetting& setting = settingOf(order.object);
    if (const auto fits = checkKind(order); !fits)
        return tl::make_unexpected(fits.error());
    if ((m_database.tagMarks(order.object) & ValueMark::ControlInhibited) != 0)
        return refused(Outcome::Inhibited, tr("commands to this object are inhibited"));
    if (const auto selected = checkSelection(order, asking); !selected)
        return tl::make_unexpected(selected.error());
    if (setting.isReasonNeeded && order.reason.trimmed().isEmpty())
        return refused(Outcome::NotConfirmed, tr("this command needs a reason"));
    auto value = order.operation == Operation::Select ? tl::expected<double, Refusal>(0) : valueOf(order);
    if (!value)
        return value;
    if (const auto interlocked = checkInterlock(setting); !interlocked)
        return tl::make_unexpected(interlocked.error());
    return value;
}

ControlRules::Checked ControlRules::checkRight(const ControlOrder& order) const
{
    const RuntimeDatabase::Object* object = m_database.object(order.object);
    const AccountRole role = order.isCommand() ? settingOf(order.object).role : order.role;
    if (!m_users.may(role, object ? object->area : QString()))
        return refused(Outcome::NotPermitted, tr("your role or areas do not permit this"));
    if (!order.page.isEmpty() && m_mayOpenPage && !m_mayOpenPage(order.page))
        return refused(Outcome::NotPermitted, tr("you may not operate from the page %1").arg(order.page));
    return {};
}

ControlRules::Checked ControlRules::checkKind(const ControlOrder& order) const
{
    const ControlSetting& setting = settingOf(order.object);
    const bool isAnalog = order.object.type == ScadaObjectType::AnalogPoint;
    if (setting.kind == Kind::None)
        return refused(Outcome::Refused, tr("this object takes no commands"));
    if ((setting.kind == Kind::Manual) != (order.operation == Operation::EnterValue))
        return refused(Outcome::Refused, setting.kind == Kind::Manual ? tr("this value is entered by hand")
                                                                      : tr("this value is not entered by hand"));
    if (order.operation == Operation::Select && setting.kind != Kind::SelectFirst)
        return refused(Outcome::Refused, tr("this object takes commands without being selected"));
    if (order.operation == Operation::SetPoint && !isAnalog)
        return refused(Outcome::Refused, tr("only an analog point takes a setpoint"));
    if (isStep(order.operation) && (!isAnalog || !(setting.step > 0)))
        return refused(Outcome::Refused, tr("this object takes no steps up and down"));
    return {};
}

ControlRules::Checked ControlRules::checkSelection(const ControlOrder& order, const Asking& asking) const
{
    const bool isSelect = order.operation == Operation::Select;
    if (!asking.selectedBy.isEmpty() && asking.selectedBy != asking.user)
        return refused(isSelect ? Outcome::Refused : Outcome::NotSelected,
                       tr("%1 has selected this object").arg(asking.selectedBy));
    const bool isNeeded = settingOf(order.object).kind == Kind::SelectFirst && !isSelect;
    if (isNeeded && asking.selectedBy.isEmpty())
        return refused(Outcome::NotSelected, tr("this object must be selected first"));
    return {};
}

tl::expected<double, Refusal> ControlRules::valueOf(const ControlOrder& order) const
{
    if (isStep(order.operation))
        return stepped(order);
    bool isNumber = false;
    const double value = order.value.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value))
        return refused(Outcome::OutOfLimits, tr("the value is no number"));
    return bounded(order, value);
}

tl::expected<double, Refusal> ControlRules::stepped(const ControlOrder& order) const
{
    const QuorixData record = m_database.presentRecord(order.object);
    const QuorixValue* value = record.GetValue(DataFieldInfo::currentValueMember);
    const QuorixValue* quality = record.GetValue("quality");
    if (!value || !quality || (quality->toInt32() & ValueMark::unreliable) != 0)
        return refused(Outcome::Refused, tr("the present value can't be relied on"));
    const double step = settingOf(order.object).step;
    return bounded(order, value->toDouble() + (order.operation == Operation::Raise ? step : -step));
}

tl::expected<double, Refusal> ControlRules::bounded(const ControlOrder& order, double value) const
{
    const ControlSetting& setting = settingOf(order.object);
    if (order.object.type != ScadaObjectType::AnalogPoint) {
        const int named = static_cast<int>(m_database.object(order.object)->states.size());
        const int highest = named > 0 ? named - 1 : 1;
        if (value != std::trunc(value) || value < 0 || value > highest)
            return refused(Outcome::OutOfLimits, tr("the value is no state from 0 to %1").arg(highest));
        return value;
    }
    if (!std::isnan(setting.low) && value < setting.low)
        return refused(Outcome::OutOfLimits, tr("the value lies below %1").arg(setting.low));
    if (!std::isnan(setting.high) && value > setting.high)
        return refused(Outcome::OutOfLimits, tr("the value lies above %1").arg(setting.high));
    return value;
}

ControlRules::Checked ControlRules::checkInterlock(const ControlSetting& setting) const
{
    // One that can't be read is one that can't be seen to hold.
    const auto interlock = Interlock::parse(setting.interlock);
    if (!interlock)
        return refused(Outcome::Interlocked, tr("the interlock can't be read: %1").arg(interlock.error()));
    if (const auto held = interlock->check(m_database); !held)
        return refused(Outcome::Interlocked, tr("interlocked: %1").arg(held.error()));
    return {};
}
