#pragma once

#include "host/hostexport.h"

#include <QTimeZone>
#include <QtGlobal>

#include <limits>
#include <optional>
#include <string_view>

/// Reads the times of recordings.
///
/// - "2020-02-08 13:30:47", with a "T" for the blank and any fraction of a second behind "." or ",": local time of the
///   zone, or with "Z", "+09:00", "+0900" or "+09" at its end that offset from UTC. Years 0001 to 9999.
/// - A number: seconds since 1970-01-01 UTC below 100,000,000,000 (the year 5138), else milliseconds.
///
/// Whatever lies beyond the millisecond is dropped.
class KORVANE_HOST_EXPORT RecordedTime
{
public:
    /// Local times are those of \p zone; of UTC when it is not valid.
    explicit RecordedTime(const QTimeZone& zone);

    /// \param notBeforeMs a local time that comes twice, when clocks are set back, is the first one not before this
    /// \returns milliseconds since 1970-01-01 UTC, nothing when \p text is no time.
    std::optional<qint64> read(std::string_view text, qint64 notBeforeMs = std::numeric_limits<qint64>::min());

private:
    qint64 toUtc(qint64 localMs, qint64 notBeforeMs);
    void findOffsets(qint64 localMinute);

    QTimeZone m_zone;
    // Of the minute read last: recordings go on in the same one, and zones change theirs at whole minutes.
    qint64 m_minute = std::numeric_limits<qint64>::min();
    qint64 m_offsetMs = 0;      ///< from UTC to local time
    qint64 m_laterOffsetMs = 0; ///< another one when the minute comes twice, then belonging to the later
};
