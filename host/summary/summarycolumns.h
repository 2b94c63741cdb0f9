#pragma once

#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/objectkey.h"

#include <QString>
#include <QTimeZone>
#include <QVariant>

/// The columns of the summary, and what they say of a point.
namespace SummaryColumns {

/// Numbers are kept: users' settings name columns by them.
enum Column {
    Name = 0,
    Description = 1,
    Station = 2,
    Area = 3,
    Value = 4, ///< with its unit, or the name of the state
    Unit = 5,
    Time = 6,
    Marks = 7,
    LowLow = 8,
    Low = 9,
    High = 10,
    HighHigh = 11,
    TodayMinimum = 12,
    TodayMaximum = 13,
    TodayMean = 14,
    TodayChanges = 15, ///< of a digital point, on and off
    TodayOnTime = 16,
    ColumnCount = 17,
};

KORVANE_HOST_EXPORT QString title(int column);

/// Whether a column holds texts that stay as long as the point does.
KORVANE_HOST_EXPORT bool isText(int column);
/// Whether what a column says changes while the plant is at work.
KORVANE_HOST_EXPORT bool isLive(int column);
/// Whether a column's cells stand to the right.
KORVANE_HOST_EXPORT bool isNumber(int column);

/// What a text column says of an object; empty for the other columns.
KORVANE_HOST_EXPORT QString constantText(const RuntimeDatabase::Object& object, int column);

/// What a column that holds no text is sorted by: values and limits as they are (states by their number), times, marks by
/// how much they take from the value, from none to an unreliable one. What is not there lies below everything.
KORVANE_HOST_EXPORT double number(const RuntimeDatabase& database, ObjectKey point, int column);

/// What is written to files: a number, a state's name, a time in UTC, or a text; durations in seconds. Invalid for nothing.
KORVANE_HOST_EXPORT QVariant value(const RuntimeDatabase& database, ObjectKey point, int column);

/// What is shown, with the point's decimals; times as the clocks in \p zone say.
KORVANE_HOST_EXPORT QString text(const RuntimeDatabase& database, ObjectKey point, int column, const QTimeZone& zone);

} // namespace SummaryColumns
