#include "platform/data/datafieldinfo.h"

#include <QLatin1String>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace {

using DataCode::DataField;
using FieldType = DataFieldInfo::FieldType;
using FieldUnit = DataFieldInfo::FieldUnit;

constexpr quint8 digital = DataFieldInfo::Digital;
constexpr quint8 analog = DataFieldInfo::Analog;
constexpr quint8 rtu = DataFieldInfo::Rtu;
constexpr quint8 channel = DataFieldInfo::Channel;

// In order of the codes, since it is searched by halving.
// clang-format off
constexpr DataFieldInfo table[] = {
    {DataField::Value, "Value", FieldType::Number, FieldUnit::Point, digital | analog,
     DataFieldInfo::currentValueMember},
    {DataField::ValueWithUnit, "ValueWithUnit", FieldType::Text, FieldUnit::None, analog, nullptr},
    {DataField::PointName, "PointName", FieldType::Text, FieldUnit::None, digital | analog, nullptr},
    {DataField::StatusName, "StatusName", FieldType::Text, FieldUnit::None, digital, nullptr},
    {DataField::StationName, "StationName", FieldType::Text, FieldUnit::None, digital | analog, nullptr},
    {DataField::FullName, "FullName", FieldType::Text, FieldUnit::None, digital | analog, nullptr},
    {DataField::TodayOnCount, "TodayOnCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::TodayOffCount, "TodayOffCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::TodayOnDuration, "TodayOnDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::TodayOffDuration, "TodayOffDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::TotalOnCount, "TotalOnCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::TotalOffCount, "TotalOffCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::TotalOnDuration, "TotalOnDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::TotalOffDuration, "TotalOffDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::MonthOnCount, "MonthOnCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::MonthOffCount, "MonthOffCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::MonthOnDuration, "MonthOnDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::MonthOffDuration, "MonthOffDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::HourMaximum, "HourMaximum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::HourMinimum, "HourMinimum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::HourMean, "HourMean", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::HourAccumulated, "HourAccumulated", FieldType::Number, FieldUnit::PointHours, analog, nullptr},
    {DataField::HourMinimumTime, "HourMinimumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::HourMaximumTime, "HourMaximumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::TodayMaximum, "TodayMaximum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::TodayMinimum, "TodayMinimum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::TodayMean, "TodayMean", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::TodayAccumulated, "TodayAccumulated", FieldType::Number, FieldUnit::PointHours, analog, nullptr},
    {DataField::TodayMinimumTime, "TodayMinimumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::TodayMaximumTime, "TodayMaximumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::MonthMaximum, "MonthMaximum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::MonthMinimum, "MonthMinimum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::MonthMean, "MonthMean", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::MonthAccumulated, "MonthAccumulated", FieldType::Number, FieldUnit::PointHours, analog, nullptr},
    {DataField::MonthMinimumTime, "MonthMinimumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::MonthMaximumTime, "MonthMaximumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::TotalMaximum, "TotalMaximum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::TotalMinimum, "TotalMinimum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::TotalMean, "TotalMean", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::TotalAccumulated, "TotalAccumulated", FieldType::Number, FieldUnit::PointHours, analog, nullptr},
    {DataField::TotalMinimumTime, "TotalMinimumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::TotalMaximumTime, "TotalMaximumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::HourOnCount, "HourOnCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::HourOffCount, "HourOffCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::HourOnDuration, "HourOnDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::HourOffDuration, "HourOffDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::WeekMaximum, "WeekMaximum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::WeekMinimum, "WeekMinimum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::WeekMean, "WeekMean", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::WeekAccumulated, "WeekAccumulated", FieldType::Number, FieldUnit::PointHours, analog, nullptr},
    {DataField::WeekMinimumTime, "WeekMinimumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::WeekMaximumTime, "WeekMaximumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::YearMaximum, "YearMaximum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::YearMinimum, "YearMinimum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::YearMean, "YearMean", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::YearAccumulated, "YearAccumulated", FieldType::Number, FieldUnit::PointHours, analog, nullptr},
    {DataField::YearMinimumTime, "YearMinimumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::YearMaximumTime, "YearMaximumTime", FieldType::Time, FieldUnit::None, analog, nullptr},
    {DataField::YearOnCount, "YearOnCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::YearOffCount, "YearOffCount", FieldType::Count, FieldUnit::None, digital, nullptr},
    {DataField::YearOnDuration, "YearOnDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::YearOffDuration, "YearOffDuration", FieldType::Number, FieldUnit::Seconds, digital, nullptr},
    {DataField::UpdateTime, "UpdateTime", FieldType::Time, FieldUnit::None, digital | analog | rtu, "time"},
    {DataField::CommState, "CommState", FieldType::State, FieldUnit::None, rtu | channel, "commState"},
    {DataField::ScanState, "ScanState", FieldType::State, FieldUnit::None, rtu, "scanState"},
    {DataField::TodayCommRatio, "TodayCommRatio", FieldType::Number, FieldUnit::Percent, rtu, nullptr},
    {DataField::TotalCommRatio, "TotalCommRatio", FieldType::Number, FieldUnit::Percent, rtu, nullptr},
    {DataField::CommOnlineTime, "CommOnlineTime", FieldType::Time, FieldUnit::None, rtu | channel, nullptr},
    {DataField::CommOfflineTime, "CommOfflineTime", FieldType::Time, FieldUnit::None, rtu | channel, nullptr},
    {DataField::DriverState, "DriverState", FieldType::State, FieldUnit::None, channel, "driverState"},
    {DataField::HighHighLimit, "HighHighLimit", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::LowLowLimit, "LowLowLimit", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::HighLimit, "HighLimit", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::LowLimit, "LowLimit", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::Description, "Description", FieldType::Text, FieldUnit::None, digital | analog, nullptr},
    {DataField::DisplayName, "DisplayName", FieldType::Text, FieldUnit::None, digital | analog, nullptr},
    {DataField::PastMaximum, "PastMaximum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::PastMinimum, "PastMinimum", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::PastMean, "PastMean", FieldType::Number, FieldUnit::Point, analog, nullptr},
    {DataField::PastAccumulated, "PastAccumulated", FieldType::Number, FieldUnit::PointHours, analog, nullptr},
    {DataField::PastMoment, "PastMoment", FieldType::Number, FieldUnit::Point, digital | analog, nullptr},
};
// clang-format on

constexpr std::size_t tableSize = std::size(table);
static_assert(tableSize <= 256, "places are kept in bytes");

constexpr bool isOrderedByCode()
{
    for (std::size_t i = 1; i < tableSize; ++i) {
        if (table[i - 1].field >= table[i].field)
            return false;
    }
    return true;
}
static_assert(isOrderedByCode(), "find(DataField) searches by halving");

using NameOrder = std::array<quint8, tableSize>;

constexpr NameOrder orderByName()
{
    NameOrder order{};
    for (std::size_t i = 0; i < tableSize; ++i) {
        std::size_t place = i;
        while (place > 0 && std::string_view(table[order[place - 1]].name) > std::string_view(table[i].name)) {
            order[place] = order[place - 1];
            --place;
        }
        order[place] = static_cast<quint8>(i);
    }
    return order;
}
constexpr NameOrder byName = orderByName();

constexpr bool areNamesUnique()
{
    for (std::size_t i = 1; i < tableSize; ++i) {
        if (std::string_view(table[byName[i - 1]].name) == std::string_view(table[byName[i]].name))
            return false;
    }
    return true;
}
static_assert(areNamesUnique(), "names and codes are a bijection");

std::array<QString, tableSize> makeTexts()
{
    std::array<QString, tableSize> texts;
    for (std::size_t i = 0; i < tableSize; ++i)
        texts[i] = QString::fromLatin1(table[i].name);
    return texts;
}

} // namespace

bool DataFieldInfo::isFieldOf(Korvane::ScadaObjectType objectType) const noexcept
{
    switch (objectType) {
    case Korvane::ScadaObjectType::DigitalPoint:
        return (families & Digital) != 0;
    case Korvane::ScadaObjectType::AnalogPoint:
        return (families & Analog) != 0;
    case Korvane::ScadaObjectType::Point:
        return (families & (Digital | Analog)) != 0;
    case Korvane::ScadaObjectType::RtuObject:
        return (families & Rtu) != 0;
    case Korvane::ScadaObjectType::ChannelObject:
        return (families & Channel) != 0;
    case Korvane::ScadaObjectType::NoObject:
    case Korvane::ScadaObjectType::ApplicationProperty:
        break;
    }
    return false;
}

const std::vector<const DataFieldInfo*>& DataFieldInfo::all()
{
    static const std::vector<const DataFieldInfo*> entries = [] {
        std::vector<const DataFieldInfo*> pointers;
        pointers.reserve(tableSize);
        for (const DataFieldInfo& entry : table)
            pointers.push_back(&entry);
        return pointers;
    }();
    return entries;
}

const DataFieldInfo* DataFieldInfo::find(DataField field) noexcept
{
    const auto* found = std::lower_bound(std::begin(table), std::end(table), field,
                                         [](const DataFieldInfo& entry, DataField code) { return entry.field < code; });
    return found != std::end(table) && found->field == field ? found : nullptr;
}

const DataFieldInfo* DataFieldInfo::find(QStringView name) noexcept
{
    const auto found = std::lower_bound(byName.begin(), byName.end(), name, [](quint8 index, QStringView text) {
        return QLatin1String(table[index].name).compare(text) < 0;
    });
    if (found == byName.end() || QLatin1String(table[*found].name) != name)
        return nullptr;
    return &table[*found];
}

QString Korvane::dtFieldToString(DataField field)
{
    static const std::array<QString, tableSize> texts = makeTexts();
    const DataFieldInfo* info = DataFieldInfo::find(field);
    return info ? texts[static_cast<std::size_t>(info - table)] : QString();
}

DataField Korvane::dtStringToCode(const QString& name)
{
    const DataFieldInfo* info = DataFieldInfo::find(QStringView(name));
    return info ? info->field : DataField::Unknown;
}
