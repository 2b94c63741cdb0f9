// The data fields that editors offer for each kind of object: ObjectTarget's catalogue operations.

#include "platform/data/datalinkinfo.h"
#include "platform/data/tagresolution.h"
#include "scada/binding/objecttarget.h"

#include <iterator>

namespace {

using DataCode::DataField;
using FieldList = ObjectTarget::FieldList;
using Korvane::ScadaObjectType;

struct DisplayName
{
    DataField field;
    const char* text; ///< also the translation's key: misspellings are kept
};

// clang-format off
constexpr DisplayName displayNames[] = {
    {DataField::Value, QT_TRANSLATE_NOOP("ObjectTarget", "Current Value")},
    {DataField::ValueWithUnit, QT_TRANSLATE_NOOP("ObjectTarget", "Current Value with Unit")},
    {DataField::PointName, QT_TRANSLATE_NOOP("ObjectTarget", "Point Name")},
    {DataField::StatusName, QT_TRANSLATE_NOOP("ObjectTarget", "Status Name")},
    {DataField::StationName, QT_TRANSLATE_NOOP("ObjectTarget", "Station Name")},
    {DataField::FullName, QT_TRANSLATE_NOOP("ObjectTarget", "Full Name")},
    {DataField::TodayOnCount, QT_TRANSLATE_NOOP("ObjectTarget", "On Count in this day")},
    {DataField::TodayOffCount, QT_TRANSLATE_NOOP("ObjectTarget", "Off Count in this day")},
    {DataField::TodayOnDuration, QT_TRANSLATE_NOOP("ObjectTarget", "On Duration in this day")},
    {DataField::TodayOffDuration, QT_TRANSLATE_NOOP("ObjectTarget", "Off Duration in this day")},
    {DataField::TotalOnCount, QT_TRANSLATE_NOOP("ObjectTarget", "Total On Count")},
    {DataField::TotalOffCount, QT_TRANSLATE_NOOP("ObjectTarget", "Total Off Count")},
    {DataField::TotalOnDuration, QT_TRANSLATE_NOOP("ObjectTarget", "Total On Duration")},
    {DataField::TotalOffDuration, QT_TRANSLATE_NOOP("ObjectTarget", "Total Off Duration")},
    {DataField::MonthOnCount, QT_TRANSLATE_NOOP("ObjectTarget", "On Count in this month")},
    {DataField::MonthOffCount, QT_TRANSLATE_NOOP("ObjectTarget", "Off Count in this month")},
    {DataField::MonthOnDuration, QT_TRANSLATE_NOOP("ObjectTarget", "On Duration in this month")},
    {DataField::MonthOffDuration, QT_TRANSLATE_NOOP("ObjectTarget", "Off Duration in this month")},
    {DataField::HourMaximum, QT_TRANSLATE_NOOP("ObjectTarget", "Time Maximum Value")},
    {DataField::HourMinimum, QT_TRANSLATE_NOOP("ObjectTarget", "Time Minimum Value")},
    {DataField::HourMean, QT_TRANSLATE_NOOP("ObjectTarget", "Time Avarge Value")},
    {DataField::HourAccumulated, QT_TRANSLATE_NOOP("ObjectTarget", "Time accumulated Value")},
    {DataField::HourMinimumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Time Minimum Time")},
    {DataField::HourMaximumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Time Maximum Time")},
    {DataField::TodayMaximum, QT_TRANSLATE_NOOP("ObjectTarget", "Today Maximum Value")},
    {DataField::TodayMinimum, QT_TRANSLATE_NOOP("ObjectTarget", "Today Minimum Value")},
    {DataField::TodayMean, QT_TRANSLATE_NOOP("ObjectTarget", "Today Avarge Value")},
    {DataField::TodayAccumulated, QT_TRANSLATE_NOOP("ObjectTarget", "Today accumulated Value")},
    {DataField::TodayMinimumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Today Minimum Time")},
    {DataField::TodayMaximumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Today Maximum Time")},
    {DataField::MonthMaximum, QT_TRANSLATE_NOOP("ObjectTarget", "Month Maximum Value")},
    {DataField::MonthMinimum, QT_TRANSLATE_NOOP("ObjectTarget", "Month Minimum Value")},
    {DataField::MonthMean, QT_TRANSLATE_NOOP("ObjectTarget", "Month Avarge Value")},
    {DataField::MonthAccumulated, QT_TRANSLATE_NOOP("ObjectTarget", "Month accumulated Value")},
    {DataField::MonthMinimumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Month Minimum Time")},
    {DataField::MonthMaximumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Month Maximum Time")},
    {DataField::TotalMaximum, QT_TRANSLATE_NOOP("ObjectTarget", "Total Maximum Value")},
    {DataField::TotalMinimum, QT_TRANSLATE_NOOP("ObjectTarget", "Total Minimum Value")},
    {DataField::TotalMean, QT_TRANSLATE_NOOP("ObjectTarget", "Total Avarge Value")},
    {DataField::TotalAccumulated, QT_TRANSLATE_NOOP("ObjectTarget", "Total accumulated Value")},
    {DataField::TotalMinimumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Total Minimum Time")},
    {DataField::TotalMaximumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Total Maximum Time")},
    {DataField::HourOnCount, QT_TRANSLATE_NOOP("ObjectTarget", "On Count in this hour")},
    {DataField::HourOffCount, QT_TRANSLATE_NOOP("ObjectTarget", "Off Count in this hour")},
    {DataField::HourOnDuration, QT_TRANSLATE_NOOP("ObjectTarget", "On Duration in this hour")},
    {DataField::HourOffDuration, QT_TRANSLATE_NOOP("ObjectTarget", "Off Duration in this hour")},
    {DataField::WeekMaximum, QT_TRANSLATE_NOOP("ObjectTarget", "Maximum Value of Week")},
    {DataField::WeekMinimum, QT_TRANSLATE_NOOP("ObjectTarget", "Minimum Value of Week")},
    {DataField::WeekMean, QT_TRANSLATE_NOOP("ObjectTarget", "Avarge Value of Week")},
    {DataField::WeekAccumulated, QT_TRANSLATE_NOOP("ObjectTarget", "Accumulated Value of Week")},
    {DataField::WeekMinimumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Minimum Value Time of Week")},
    {DataField::WeekMaximumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Maximum Value Time of Week")},
    {DataField::YearMaximum, QT_TRANSLATE_NOOP("ObjectTarget", "Year Maximum Value")},
    {DataField::YearMinimum, QT_TRANSLATE_NOOP("ObjectTarget", "Year Minimum Value")},
    {DataField::YearMean, QT_TRANSLATE_NOOP("ObjectTarget", "Year Avarge Value")},
    {DataField::YearAccumulated, QT_TRANSLATE_NOOP("ObjectTarget", "Year accumulated Value")},
    {DataField::YearMinimumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Year Minimum Time")},
    {DataField::YearMaximumTime, QT_TRANSLATE_NOOP("ObjectTarget", "Year Maximum Time")},
    {DataField::YearOnCount, QT_TRANSLATE_NOOP("ObjectTarget", "On Count in this year")},
    {DataField::YearOffCount, QT_TRANSLATE_NOOP("ObjectTarget", "Off Count in this year")},
    {DataField::YearOnDuration, QT_TRANSLATE_NOOP("ObjectTarget", "On Duration in this year")},
    {DataField::YearOffDuration, QT_TRANSLATE_NOOP("ObjectTarget", "Off Duration in this year")},
    {DataField::UpdateTime, QT_TRANSLATE_NOOP("ObjectTarget", "Update Time")},
    {DataField::CommState, QT_TRANSLATE_NOOP("ObjectTarget", "Comm State")},
    {DataField::ScanState, QT_TRANSLATE_NOOP("ObjectTarget", "Scan State")},
    {DataField::TodayCommRatio, QT_TRANSLATE_NOOP("ObjectTarget", "Today Comm. Ratio")},
    {DataField::TotalCommRatio, QT_TRANSLATE_NOOP("ObjectTarget", "Total Comm. Ratio")},
    {DataField::CommOnlineTime, QT_TRANSLATE_NOOP("ObjectTarget", "Comm. Online Time")},
    {DataField::CommOfflineTime, QT_TRANSLATE_NOOP("ObjectTarget", "Comm. Offline Time")},
    {DataField::DriverState, QT_TRANSLATE_NOOP("ObjectTarget", "Driver State")},
    {DataField::HighHighLimit, QT_TRANSLATE_NOOP("ObjectTarget", "HiHi")},
    {DataField::LowLowLimit, QT_TRANSLATE_NOOP("ObjectTarget", "LowLow")},
    {DataField::HighLimit, QT_TRANSLATE_NOOP("ObjectTarget", "Hi")},
    {DataField::LowLimit, QT_TRANSLATE_NOOP("ObjectTarget", "Low")},
    {DataField::Description, QT_TRANSLATE_NOOP("ObjectTarget", "Point Description")},
    {DataField::DisplayName, QT_TRANSLATE_NOOP("ObjectTarget", "DisplayName")},
    {DataField::PastMaximum, QT_TRANSLATE_NOOP("ObjectTarget", "Past Max Value")},
    {DataField::PastMinimum, QT_TRANSLATE_NOOP("ObjectTarget", "Past Min Value")},
    {DataField::PastMean, QT_TRANSLATE_NOOP("ObjectTarget", "Past Mean Value")},
    {DataField::PastAccumulated, QT_TRANSLATE_NOOP("ObjectTarget", "Past Accumulated Value")},
    {DataField::PastMoment, QT_TRANSLATE_NOOP("ObjectTarget", "Past Moment Value")},
};
// clang-format on

constexpr const char* latestScanTime = QT_TRANSLATE_NOOP("ObjectTarget", "Latest Scan Time");

// The lists. Their order is the order in which editors show them; the maximum's time stands before the minimum's
// although its code is the larger.

constexpr DataField digitalPointFields[] = {
    DataField::Value,         DataField::PointName,       DataField::Description,      DataField::DisplayName,
    DataField::StationName,   DataField::FullName,        DataField::StatusName,       DataField::HourOnCount,
    DataField::HourOffCount,  DataField::HourOnDuration,  DataField::HourOffDuration,  DataField::TodayOnCount,
    DataField::TodayOffCount, DataField::TodayOnDuration, DataField::TodayOffDuration, DataField::MonthOnCount,
    DataField::MonthOffCount, DataField::MonthOnDuration, DataField::MonthOffDuration, DataField::YearOnCount,
    DataField::YearOffCount,  DataField::YearOnDuration,  DataField::YearOffDuration,  DataField::TotalOnCount,
    DataField::TotalOffCount, DataField::TotalOnDuration, DataField::TotalOffDuration, DataField::UpdateTime,
};

constexpr DataField analogPointFields[] = {
    DataField::Value,
    DataField::ValueWithUnit,
    DataField::PointName,
    DataField::Description,
    DataField::DisplayName,
    DataField::StationName,
    DataField::FullName,
    DataField::HourMaximum,
    DataField::HourMinimum,
    DataField::HourMean,
    DataField::HourAccumulated,
    DataField::HourMaximumTime,
    DataField::HourMinimumTime,
    DataField::TodayMaximum,
    DataField::TodayMinimum,
    DataField::TodayMean,
    DataField::TodayAccumulated,
    DataField::TodayMaximumTime,
    DataField::TodayMinimumTime,
    DataField::WeekMaximum,
    DataField::WeekMinimum,
    DataField::WeekMean,
    DataField::WeekAccumulated,
    DataField::WeekMaximumTime,
    DataField::WeekMinimumTime,
    DataField::MonthMaximum,
    DataField::MonthMinimum,
    DataField::MonthMean,
    DataField::MonthAccumulated,
    DataField::MonthMaximumTime,
    DataField::MonthMinimumTime,
    DataField::YearMaximum,
    DataField::YearMinimum,
    DataField::YearMean,
    DataField::YearAccumulated,
    DataField::YearMaximumTime,
    DataField::YearMinimumTime,
    DataField::TotalMaximum,
    DataField::TotalMinimum,
    DataField::TotalMean,
    DataField::TotalAccumulated,
    DataField::TotalMaximumTime,
    DataField::TotalMinimumTime,
    DataField::HighHighLimit,
    DataField::HighLimit,
    DataField::LowLowLimit,
    DataField::LowLimit,
    DataField::UpdateTime,
};

constexpr DataField rtuFields[] = {
    DataField::CommState,      DataField::ScanState,      DataField::UpdateTime,      DataField::TodayCommRatio,
    DataField::TotalCommRatio, DataField::CommOnlineTime, DataField::CommOfflineTime,
};

constexpr DataField channelFields[] = {
    DataField::CommState,
    DataField::DriverState,
    DataField::CommOnlineTime,
    DataField::CommOfflineTime,
};

constexpr DataField generalFields[] = {
    DataField::Value,           DataField::ValueWithUnit,    DataField::PointName,        DataField::Description,
    DataField::DisplayName,     DataField::StationName,      DataField::FullName,         DataField::StatusName,
    DataField::HighHighLimit,   DataField::HighLimit,        DataField::LowLowLimit,      DataField::LowLimit,
    DataField::HourMaximum,     DataField::HourMinimum,      DataField::HourMean,         DataField::HourAccumulated,
    DataField::HourMaximumTime, DataField::HourMinimumTime,  DataField::TodayMaximum,     DataField::TodayMinimum,
    DataField::TodayMean,       DataField::TodayAccumulated, DataField::TodayMaximumTime, DataField::TodayMinimumTime,
    DataField::WeekMaximum,     DataField::WeekMinimum,      DataField::WeekMean,         DataField::WeekAccumulated,
    DataField::WeekMaximumTime, DataField::WeekMinimumTime,  DataField::MonthMaximum,     DataField::MonthMinimum,
    DataField::MonthMean,       DataField::MonthAccumulated, DataField::MonthMaximumTime, DataField::MonthMinimumTime,
    DataField::YearMaximum,     DataField::YearMinimum,      DataField::YearMean,         DataField::YearAccumulated,
    DataField::YearMaximumTime, DataField::YearMinimumTime,  DataField::TotalMaximum,     DataField::TotalMinimum,
    DataField::TotalMean,       DataField::TotalAccumulated, DataField::TotalMaximumTime, DataField::TotalMinimumTime,
    DataField::HourOnCount,     DataField::HourOffCount,     DataField::HourOnDuration,   DataField::HourOffDuration,
    DataField::TodayOnCount,    DataField::TodayOffCount,    DataField::TodayOnDuration,  DataField::TodayOffDuration,
    DataField::MonthOnCount,    DataField::MonthOffCount,    DataField::MonthOnDuration,  DataField::MonthOffDuration,
    DataField::YearOnCount,     DataField::YearOffCount,     DataField::YearOnDuration,   DataField::YearOffDuration,
    DataField::TotalOnCount,    DataField::TotalOffCount,    DataField::TotalOnDuration,  DataField::TotalOffDuration,
    DataField::UpdateTime,
};

constexpr DataField pointHistoryFields[] = {
    DataField::Value,
    DataField::HourMaximum,
    DataField::HourMinimum,
    DataField::HourMean,
    DataField::HourAccumulated,
    DataField::TodayMaximum,
    DataField::TodayMinimum,
    DataField::TodayMean,
    DataField::TodayAccumulated,
    DataField::WeekMaximum,
    DataField::WeekMinimum,
    DataField::WeekMean,
    DataField::WeekAccumulated,
    DataField::WeekMaximumTime,
    DataField::WeekMinimumTime,
    DataField::MonthMaximum,
    DataField::MonthMinimum,
    DataField::MonthMean,
    DataField::MonthAccumulated,
    DataField::YearMaximum,
    DataField::YearMinimum,
    DataField::YearMean,
    DataField::YearAccumulated,
    DataField::YearMaximumTime,
    DataField::YearMinimumTime,
    DataField::TotalMaximum,
    DataField::TotalMinimum,
    DataField::TotalMean,
    DataField::TotalAccumulated,
    DataField::HourOnCount,
    DataField::HourOffCount,
    DataField::HourOnDuration,
    DataField::HourOffDuration,
    DataField::TodayOnCount,
    DataField::TodayOffCount,
    DataField::TodayOnDuration,
    DataField::TodayOffDuration,
    DataField::MonthOnCount,
    DataField::MonthOffCount,
    DataField::MonthOnDuration,
    DataField::MonthOffDuration,
    DataField::YearOnCount,
    DataField::YearOffCount,
    DataField::YearOnDuration,
    DataField::YearOffDuration,
    DataField::TotalOnCount,
    DataField::TotalOffCount,
    DataField::TotalOnDuration,
    DataField::TotalOffDuration,
    DataField::UpdateTime,
};

constexpr DataField dataLinkItemFields[] = {
    DataField::Value,           DataField::PastMoment,       DataField::PastAccumulated, DataField::PastMean,
    DataField::PastMaximum,     DataField::PastMinimum,      DataField::HourMaximum,     DataField::HourMinimum,
    DataField::HourMean,        DataField::HourAccumulated,  DataField::TodayMaximum,    DataField::TodayMinimum,
    DataField::TodayMean,       DataField::TodayAccumulated, DataField::WeekMaximum,     DataField::WeekMinimum,
    DataField::WeekMean,        DataField::WeekAccumulated,  DataField::WeekMaximumTime, DataField::WeekMinimumTime,
    DataField::MonthMaximum,    DataField::MonthMinimum,     DataField::MonthMean,       DataField::MonthAccumulated,
    DataField::YearMaximum,     DataField::YearMinimum,      DataField::YearMean,        DataField::YearAccumulated,
    DataField::YearMaximumTime, DataField::YearMinimumTime,  DataField::TotalMaximum,    DataField::TotalMinimum,
    DataField::TotalMean,       DataField::TotalAccumulated,
};
constexpr const char* displayName(DataField field)
{
    for (const DisplayName& name : displayNames) {
        if (name.field == field)
            return name.text;
    }
    return nullptr;
}

/// The names of a list, looked up while compiling: a field without a name does not compile.
template <std::size_t size>
struct NamedFields
{
    DisplayName rows[size]{};

    explicit constexpr NamedFields(const DataField (&fields)[size])
    {
        for (std::size_t i = 0; i < size; ++i) {
            rows[i] = {fields[i], displayName(fields[i])};
            if (!rows[i].text)
                throw "a listed field has no display name";
        }
    }

    constexpr NamedFields withName(DataField field, const char* text) const
    {
        NamedFields renamed = *this;
        for (DisplayName& row : renamed.rows) {
            if (row.field == field)
                row.text = text;
        }
        return renamed;
    }

    FieldList translated() const
    {
        FieldList list;
        list.reserve(int(size));
        for (const DisplayName& row : rows)
            list.append({row.field, ObjectTarget::tr(row.text)});
        return list;
    }
};

constexpr NamedFields digitalPoint(digitalPointFields);
constexpr NamedFields analogPoint(analogPointFields);
constexpr NamedFields rtu = NamedFields(rtuFields).withName(DataField::UpdateTime, latestScanTime);
constexpr NamedFields channel(channelFields);
constexpr NamedFields general(generalFields);
constexpr NamedFields pointHistory(pointHistoryFields);
constexpr NamedFields dataLinkItem(dataLinkItemFields);

} // namespace

ObjectTarget::FieldList ObjectTarget::getFieldInformationByType(ScadaObjectType type)
{
    switch (type) {
    case ScadaObjectType::AnalogPoint:
        return analogPoint.translated();
    case ScadaObjectType::DigitalPoint:
        return digitalPoint.translated();
    case ScadaObjectType::RtuObject:
        return rtu.translated();
    case ScadaObjectType::ChannelObject:
        return channel.translated();
    default:
        return general.translated();
    }
}

ObjectTarget::FieldList ObjectTarget::getPointFieldInformationByTagString(const QString& tag)
{
    // Kept: the id's range decides, not the resolved kind.
    const qint32 id = Korvane::resolveFromString(tag, nullptr).id;
    return getFieldInformationByType(Korvane::pointTypeOfId(id));
}

ObjectTarget::FieldList ObjectTarget::getPointDataFieldInformation()
{
    return pointHistory.translated();
}

ObjectTarget::FieldList ObjectTarget::getDataLinkItemFieldInformation()
{
    return dataLinkItem.translated();
}
