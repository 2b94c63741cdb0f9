#include "host/sources/sourceaddress.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace {

using Kind = SourceAddress::Kind;
using Times = SourceAddress::Times;

/// Reads a value into the address; false when it is none of the parameter's.
using ReadValue = bool (*)(const QString& value, SourceAddress& address);

bool readSeed(const QString& value, SourceAddress& address)
{
    bool isNumber = false;
    address.seed = value.toUInt(&isNumber);
    return isNumber;
}

bool readSpeed(const QString& value, SourceAddress& address)
{
    bool isNumber = false;
    address.speed = value.toDouble(&isNumber);
    return isNumber && address.speed >= SourceAddress::lowestSpeed && address.speed <= SourceAddress::highestSpeed;
}

bool readLoop(const QString& value, SourceAddress& address)
{
    address.isLooped = value == QLatin1String("1");
    return address.isLooped || value == QLatin1String("0");
}

bool readMap(const QString& value, SourceAddress& address)
{
    address.map = value;
    return !value.isEmpty();
}

bool readTimes(const QString& value, SourceAddress& address)
{
    address.times = value == QLatin1String("row") ? Times::Row : Times::Arrival;
    return address.times == Times::Row || value == QLatin1String("arrival");
}

struct Parameter
{
    const char* name;
    const char* values;
    ReadValue read;
    bool isOfSimulation;
    bool isOfRecording;
    bool isOfStandardInput;
};

constexpr std::array<Parameter, 5> parameters = {{
    {"seed", "a whole number from 0 to 4294967295", readSeed, true, false, false},
    {"speed", "a number from 0.01 to 10000", readSpeed, false, true, false},
    {"loop", "0 or 1", readLoop, false, true, false},
    {"map", "the name of a file", readMap, false, true, true},
    {"times", "row or arrival", readTimes, false, true, true},
}};

bool isOfKind(const Parameter& parameter, Kind kind)
{
    switch (kind) {
    case Kind::Simulation:
        return parameter.isOfSimulation;
    case Kind::Recording:
        return parameter.isOfRecording;
    case Kind::StandardInput:
        break;
    }
    return parameter.isOfStandardInput;
}

/// The parameters of one kind, for a message.
QString namesOf(Kind kind)
{
    QStringList names;
    for (const Parameter& parameter : parameters) {
        if (isOfKind(parameter, kind))
            names.append(QLatin1String(parameter.name));
    }
    return names.join(QStringLiteral(", "));
}

tl::unexpected<QString> wrong(const QString& address, const QString& reason)
{
    return tl::make_unexpected(QStringLiteral("source \"%1\": %2").arg(address, reason));
}

/// Reads what stands before the parameters.
tl::expected<SourceAddress, QString> parsePlace(const QString& place)
{
    const QLatin1String recording("recording:");
    SourceAddress address;
    if (place == QLatin1String("simulation"))
        return address;
    if (!place.startsWith(recording)) {
        return tl::make_unexpected(QStringLiteral("unknown kind; known are simulation, recording:FILE and recording:- "
                                                  "(standard input)"));
    }
    address.file = place.mid(recording.size());
    if (address.file.isEmpty())
        return tl::make_unexpected(QStringLiteral("the file's name is missing"));
    address.kind = address.file == QLatin1String("-") ? Kind::StandardInput : Kind::Recording;
    if (address.kind == Kind::StandardInput) {
        address.file.clear();
        address.times = Times::Arrival;
    }
    return address;
}

} // namespace

tl::expected<SourceAddress, QString> SourceAddress::parse(const QString& text)
{
    const int mark = text.lastIndexOf(QLatin1Char('?'));
    auto address = parsePlace(text.left(mark));
    if (!address)
        return wrong(text, address.error());

    QStringList given;
    const QString query = mark < 0 ? QString() : text.mid(mark + 1);
    for (const QString& part :
         query.split(QLatin1Char('&'), query.isEmpty() ? Qt::SkipEmptyParts : Qt::KeepEmptyParts)) {
        const QString name = part.section(QLatin1Char('='), 0, 0);
        const auto parameter = std::find_if(parameters.begin(), parameters.end(), [&](const Parameter& known) {
            return isOfKind(known, address->kind) && name == QLatin1String(known.name);
        });
        if (parameter == parameters.end()) {
            return wrong(text, QStringLiteral("it has no parameter \"%1\", only %2").arg(name, namesOf(address->kind)));
        }
        if (given.contains(name))
            return wrong(text, QStringLiteral("the parameter %1 comes twice").arg(name));
        given.append(name);
        if (!parameter->read(part.mid(name.size() + 1), *address))
            return wrong(text, QStringLiteral("%1 must be %2").arg(name, QLatin1String(parameter->values)));
    }
    return address;
}
