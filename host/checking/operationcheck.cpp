#include "host/checking/operationcheck.h"

namespace {

using OperationCheck::Found;
using Kind = Operation::Kind;

Found unfit(const QString& text)
{
    return {Finding::Severity::Error, "unfit-command", text};
}

// Comparing with a limit that is not there is false.
bool isOutside(double value, const ControlSetting& control)
{
    return value < control.low || value > control.high;
}

QString limitsText(const ControlSetting& control)
{
    return QStringLiteral("%1 to %2").arg(control.low).arg(control.high);
}

void checkLimits(const Operation& operation, const ControlSetting& control, std::vector<Found>& found)
{
    if (operation.value && isOutside(*operation.value, control)) {
        found.push_back(
            {Finding::Severity::Error, "beyond-limits",
             QStringLiteral("sends %1, but the control limits are %2").arg(*operation.value).arg(limitsText(control))});
    }
    const NumberInputParam* input = operation.input.numberInputParam.get();
    if (input && (isOutside(input->minValue, control) || isOutside(input->maxValue, control))) {
        found.push_back({Finding::Severity::Error, "beyond-limits",
                         QStringLiteral("lets the operator enter %1 to %2, but the control limits are %3")
                             .arg(input->minValue)
                             .arg(input->maxValue)
                             .arg(limitsText(control))});
    }
    if (!operation.input.enumInputParam)
        return;
    for (const auto& [name, value] : operation.input.enumInputParam->enumValues) {
        if (isOutside(value, control)) {
            found.push_back({Finding::Severity::Error, "beyond-limits",
                             QStringLiteral("offers \"%1\" (%2), but the control limits are %3")
                                 .arg(name)
                                 .arg(value)
                                 .arg(limitsText(control))});
        }
    }
}

} // namespace

std::vector<Found> OperationCheck::ofOperation(const Operation& operation, const RuntimeDatabase::Object& object)
{
    const ControlSetting& control = object.control;
    const QString command = Operation::kindName(operation.kind);
    if (!control.isControllable()) {
        return {{Finding::Severity::Error, "not-controllable",
                 QStringLiteral("\"%1\" takes no commands, so \"%2\" is always refused").arg(object.name, command)}};
    }
    std::vector<Found> found;
    const bool isDigital = object.type == Korvane::ScadaObjectType::DigitalPoint;
    const bool isStep = operation.kind == Kind::Raise || operation.kind == Kind::Lower;
    const bool isManual = control.kind == ControlSetting::Kind::Manual;
    if (isManual != (operation.kind == Kind::EnterValue)) {
        found.push_back(unfit(isManual
                                  ? QStringLiteral("the value of \"%1\" is entered by hand: \"%2\" does not fit")
                                        .arg(object.name, command)
                                  : QStringLiteral("the value of \"%1\" is not entered by hand").arg(object.name)));
    } else if (operation.kind == Kind::Select && control.kind != ControlSetting::Kind::SelectFirst) {
        found.push_back(unfit(QStringLiteral("\"%1\" takes commands at once, without a selection").arg(object.name)));
    } else if (isDigital && (isStep || operation.kind == Kind::SetPoint)) {
        found.push_back(unfit(QStringLiteral("\"%1\" is digital: \"%2\" does not fit").arg(object.name, command)));
    } else if (isStep && control.step == 0) {
        found.push_back(unfit(QStringLiteral("\"%1\" has no step to raise and lower by").arg(object.name)));
    }
    if (Operation::hasValue(operation.kind))
        checkLimits(operation, control, found);
    return found;
}

bool OperationCheck::isUnguarded(const RuntimeDatabase::Object& object)
{
    const ControlSetting& control = object.control;
    // What is entered by hand reaches no process.
    const bool isSent = control.isControllable() && control.kind != ControlSetting::Kind::Manual;
    return isSent && control.role <= AccountRole::Operator &&
           control.confirmation == ControlSetting::Confirmation::None && control.interlock.isEmpty();
}
