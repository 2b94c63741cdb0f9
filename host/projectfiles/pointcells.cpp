#include "host/projectfiles/pointcells.h"

#include "host/projectfiles/csvtext.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using Object = RuntimeDatabase::Object;

QString numberText(double number)
{
    return std::isnan(number) ? QString() : QString::number(number, 'g', QLocale::FloatingPointShortest);
}

/// Empty for the default, 0.
QString quantityText(double number)
{
    return number == 0 ? QString() : numberText(number);
}

QString secondsText(std::chrono::milliseconds duration)
{
    return quantityText(static_cast<double>(duration.count()) / 1000);
}

/// Empty for -1, which stands for none.
QString countText(int number)
{
    return number < 0 ? QString() : QString::number(number);
}

QString flagText(bool flag)
{
    return flag ? QStringLiteral("1") : QString();
}

QString kindText(const Object& object)
{
    switch (object.type) {
    case Korvane::ScadaObjectType::DigitalPoint:
        return QStringLiteral("digital");
    case Korvane::ScadaObjectType::AnalogPoint:
        return QStringLiteral("analog");
    case Korvane::ScadaObjectType::RtuObject:
        return QStringLiteral("unit");
    case Korvane::ScadaObjectType::ChannelObject:
        return QStringLiteral("line");
    default:
        return {};
    }
}

QString controlText(const Object& object)
{
    static constexpr std::array<const char*, 4> names = {"", "direct", "select", "manual"};
    return QLatin1String(names[static_cast<std::size_t>(object.control.kind)]);
}

QString roleText(const Object& object)
{
    return object.control.role == AccountRole::Operator ? QString() : accountRoleName(object.control.role);
}

QString confirmationText(const Object& object)
{
    static constexpr std::array<const char*, 3> names = {"", "user", "second"};
    return QLatin1String(names[static_cast<std::size_t>(object.control.confirmation)]);
}

template <auto member>
QString textOf(const Object& object)
{
    return object.*member;
}
template <auto member>
QString numberOf(const Object& object)
{
    return numberText(object.*member);
}
template <auto member>
QString quantityOf(const Object& object)
{
    return quantityText(object.*member);
}
template <auto member>
QString countOf(const Object& object)
{
    return countText(object.*member);
}
template <ScadaAlarm::Cause cause>
QString severityOf(const Object& object)
{
    return countText(object.alarm.severity(cause));
}

struct Column
{
    const char* name;
    QString (*text)(const Object& object);
};

using Cause = ScadaAlarm::Cause;

constexpr std::array<Column, 45> table = {{
    {"id", [](const Object& object) { return QString::number(object.id); }},
    {"name", &textOf<&Object::name>},
    {"kind", &kindText},
    {"unit", &textOf<&Object::unit>},
    {"description", &textOf<&Object::description>},
    {"display_name", &textOf<&Object::displayName>},
    {"station", &textOf<&Object::station>},
    {"low_low", &numberOf<&Object::lowLow>},
    {"low", &numberOf<&Object::low>},
    {"high", &numberOf<&Object::high>},
    {"high_high", &numberOf<&Object::highHigh>},
    {"hysteresis", &quantityOf<&Object::hysteresis>},
    {"decimals", &countOf<&Object::decimals>},
    {"scale_low", &quantityOf<&Object::scaleLow>},
    {"scale_high", &quantityOf<&Object::scaleHigh>},
    {"states", [](const Object& object) { return object.states.join(QLatin1Char('|')); }},
    {"abnormal_state", &countOf<&Object::abnormalState>},
    {"stale_after", [](const Object& object) { return secondsText(object.staleAfter); }},
    {"address", &textOf<&Object::address>},
    {"area", &textOf<&Object::area>},
    {"low_low_severity", &severityOf<Cause::LowLow>},
    {"low_severity", &severityOf<Cause::Low>},
    {"high_severity", &severityOf<Cause::High>},
    {"high_high_severity", &severityOf<Cause::HighHigh>},
    {"state_severity", &severityOf<Cause::StateChange>},
    {"rate_severity", &severityOf<Cause::RateOfChange>},
    {"quality_severity", &severityOf<Cause::Quality>},
    {"communication_severity", &severityOf<Cause::Communication>},
    {"rate_limit", [](const Object& object) { return numberText(object.alarm.rateLimit); }},
    {"on_delay", [](const Object& object) { return secondsText(object.alarm.onDelay); }},
    {"off_delay", [](const Object& object) { return secondsText(object.alarm.offDelay); }},
    {"latching", [](const Object& object) { return flagText(object.alarm.isLatching); }},
    {"alarm_message", [](const Object& object) { return object.alarm.message; }},
    {"parent", &textOf<&Object::parent>},
    {"control", &controlText},
    {"control_role", &roleText},
    {"control_confirm", &confirmationText},
    {"control_reason", [](const Object& object) { return flagText(object.control.isReasonNeeded); }},
    {"control_low", [](const Object& object) { return numberText(object.control.low); }},
    {"control_high", [](const Object& object) { return numberText(object.control.high); }},
    {"control_step", [](const Object& object) { return quantityText(object.control.step); }},
    {"feedback", [](const Object& object) { return object.control.feedback; }},
    {"feedback_tolerance", [](const Object& object) { return quantityText(object.control.tolerance); }},
    {"feedback_timeout", [](const Object& object) { return secondsText(object.control.timeout); }},
    {"interlock", [](const Object& object) { return object.control.interlock; }},
}};

} // namespace

QStringList PointCells::columns()
{
    QStringList names;
    for (const Column& column : table)
        names.append(QLatin1String(column.name));
    return names;
}

QString PointCells::text(const Object& object, const QString& column)
{
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&column](const Column& each) { return column == QLatin1String(each.name); });
    return found == table.end() ? QString() : found->text(object);
}

QByteArray PointCells::list(const std::vector<Object>& objects)
{
    constexpr char separator = ',';
    QByteArray lines = columns().join(QLatin1Char(separator)).toUtf8() + '\n';
    for (const Object& object : objects) {
        QByteArray line;
        for (const Column& column : table)
            line += CsvText::field(column.text(object), separator) + separator;
        line.chop(1);
        lines += line + '\n';
    }
    return lines;
}
