#pragma once

#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <vector>

/// Reads lists of points: files of separated text, one object a line, that a spreadsheet can edit.
///
/// UTF-8, separated by comma, semicolon or tab, with a header line that names the columns in any order and case:
///
/// | column                           | meaning                                                                      |
/// |----------------------------------|------------------------------------------------------------------------------|
/// | id                               | digital 100001 to 199999, analog 200001 to 2999999, unit and line from 1     |
/// | name                             | one that tags can reach (Korvane::isAddressableName)                         |
/// | kind                             | digital, analog, unit or line                                                |
/// | description, display_name        | texts                                                                        |
/// | station, unit, address           | texts                                                                        |
/// | low_low, low, high, high_high    | limits, with low_low <= low < high <= high_high; empty for none              |
/// | hysteresis                       | 0 or more                                                                    |
/// | decimals                         | 0 to 15; empty for as many as needed                                         |
/// | scale_low, scale_high            | range of bars and scales, low not above high                                 |
/// | states                           | texts of the states from 0 on, joined by bars: Closed&#124;Open              |
/// | abnormal_state                   | number of a state                                                            |
/// | stale_after                      | seconds, fractions allowed; empty or 0 for ever                              |
/// | area                             | area of responsibility                                                       |
/// | low_low_severity, low_severity, high_severity, high_high_severity | 0 to 9: makes the limit an alarm; empty for none |
/// | state_severity, rate_severity, quality_severity, communication_severity | the same of the abnormal state, the rate limit, a useless value, failed communication |
/// | rate_limit                       | change of an analog point, either way, in its unit per second                |
/// | on_delay, off_delay              | seconds, fractions allowed, that a condition must hold, or be gone           |
/// | latching                         | 1 for an alarm that waits for an operator once its condition is gone         |
/// | alarm_message                    | what the operator is told; empty for the object's name and the cause         |
/// | parent                           | name of a point's unit or of a unit's line; a line has none                  |
/// | control                          | none (or empty), direct, select or manual: ControlSetting::Kind              |
/// | control_role                     | viewer to administrator: lowest role that may send commands; empty for operator |
/// | control_confirm                  | none (or empty), user or second: ControlSetting::Confirmation                |
/// | control_reason                   | 1 for commands that need a reason                                            |
/// | control_low, control_high        | bounds of a setpoint, low not above high; empty for none                     |
/// | control_step                     | what raise and lower change, 0 or more                                       |
/// | feedback                         | name of the point that shows the command done; empty for the object itself   |
/// | feedback_tolerance               | how far the feedback may lie from the value sent, 0 or more                  |
/// | feedback_timeout                 | seconds, fractions allowed, 0 to 3600; empty or 0 for the system's own       |
/// | interlock                        | what must hold for a command, kept as it stands                              |
///
/// The first three are needed. Where the separator is no comma, numbers may have a decimal comma.
namespace PointList {

struct Result
{
    std::vector<RuntimeDatabase::Object> objects; ///< in the order of the file; RuntimeDatabase takes each of them
    /// One text for each line that was left out and each column of the header that has no meaning, with file, line and
    /// whatever is known of column and object.
    QStringList problems;
};

/// Reads the list at \p path; a bad line is left out and told, the rest is read.
/// \returns the reason, naming the file, when there is no such file, it is no regular one, it cannot be read, or its
/// header lacks a needed column.
[[nodiscard]] KORVANE_HOST_EXPORT tl::expected<Result, QString> read(const QString& path);

/// Reads the list at \p path into \p database.
/// \returns what was left out and why, as read() tells it, or the reason why there is no list.
[[nodiscard]] KORVANE_HOST_EXPORT tl::expected<QStringList, QString> load(const QString& path,
                                                                          RuntimeDatabase& database);

/// A list without points: the header line with every column.
[[nodiscard]] KORVANE_HOST_EXPORT QByteArray empty();

} // namespace PointList
