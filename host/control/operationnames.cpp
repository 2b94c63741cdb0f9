#include "host/control/operationnames.h"

#include <QCoreApplication>

#include <array>

namespace {

struct Name
{
    const char* name;
    const char* text;
};

// In the order of ScadaOperationMessage::Operation.
constexpr std::array<Name, 16> operations = {{
    {"select", QT_TRANSLATE_NOOP("OperationNames", "Select")},
    {"operate", QT_TRANSLATE_NOOP("OperationNames", "Operate")},
    {"cancel", QT_TRANSLATE_NOOP("OperationNames", "Cancel")},
    {"setPoint", QT_TRANSLATE_NOOP("OperationNames", "Setpoint")},
    {"raise", QT_TRANSLATE_NOOP("OperationNames", "Raise")},
    {"lower", QT_TRANSLATE_NOOP("OperationNames", "Lower")},
    {"enterValue", QT_TRANSLATE_NOOP("OperationNames", "Enter value")},
    {"substitute", QT_TRANSLATE_NOOP("OperationNames", "Substitute")},
    {"endSubstitution", QT_TRANSLATE_NOOP("OperationNames", "End substitution")},
    {"inhibit", QT_TRANSLATE_NOOP("OperationNames", "Inhibit")},
    {"tag", QT_TRANSLATE_NOOP("OperationNames", "Information tag")},
    {"changeLimit", QT_TRANSLATE_NOOP("OperationNames", "Change limit")},
    {"changeDeadBand", QT_TRANSLATE_NOOP("OperationNames", "Change dead band")},
    {"scan", QT_TRANSLATE_NOOP("OperationNames", "Scan")},
    {"reconnect", QT_TRANSLATE_NOOP("OperationNames", "Reconnect")},
    {"resetStatistics", QT_TRANSLATE_NOOP("OperationNames", "Reset statistics")},
}};

// In the order of ScadaOperationMessage::Outcome.
constexpr std::array<Name, 12> outcomes = {{
    {"requested", QT_TRANSLATE_NOOP("OperationNames", "Requested")},
    {"sent", QT_TRANSLATE_NOOP("OperationNames", "Sent")},
    {"done", QT_TRANSLATE_NOOP("OperationNames", "Done")},
    {"notPermitted", QT_TRANSLATE_NOOP("OperationNames", "Not permitted")},
    {"inhibited", QT_TRANSLATE_NOOP("OperationNames", "Inhibited")},
    {"interlocked", QT_TRANSLATE_NOOP("OperationNames", "Interlocked")},
    {"notConfirmed", QT_TRANSLATE_NOOP("OperationNames", "Not confirmed")},
    {"notSelected", QT_TRANSLATE_NOOP("OperationNames", "Not selected")},
    {"outOfLimits", QT_TRANSLATE_NOOP("OperationNames", "Out of limits")},
    {"refused", QT_TRANSLATE_NOOP("OperationNames", "Refused")},
    {"timedOut", QT_TRANSLATE_NOOP("OperationNames", "Timed out")},
    {"cancelled", QT_TRANSLATE_NOOP("OperationNames", "Cancelled")},
}};

template <typename Enum, std::size_t count>
const Name& entryOf(const std::array<Name, count>& names, Enum value)
{
    return names.at(static_cast<std::size_t>(value));
}

template <typename Enum, std::size_t count>
bool readFrom(const std::array<Name, count>& names, const QString& name, Enum& value)
{
    for (std::size_t place = 0; place < count; ++place) {
        if (name == QLatin1String(names[place].name)) {
            value = static_cast<Enum>(place);
            return true;
        }
    }
    return false;
}

QString translated(const Name& name)
{
    return QCoreApplication::translate("OperationNames", name.text);
}

} // namespace

QString OperationNames::nameOf(Operation operation)
{
    return QLatin1String(entryOf(operations, operation).name);
}

QString OperationNames::nameOf(Outcome outcome)
{
    return QLatin1String(entryOf(outcomes, outcome).name);
}

bool OperationNames::read(const QString& name, Operation& operation)
{
    return readFrom(operations, name, operation);
}

bool OperationNames::read(const QString& name, Outcome& outcome)
{
    return readFrom(outcomes, name, outcome);
}

QString OperationNames::textOf(Operation operation)
{
    return translated(entryOf(operations, operation));
}

QString OperationNames::textOf(Outcome outcome)
{
    return translated(entryOf(outcomes, outcome));
}
