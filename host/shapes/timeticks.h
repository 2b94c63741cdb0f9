#pragma once

#include "host/hostexport.h"

#include <QString>
#include <QTimeZone>

#include <vector>

/// The marks of a time axis at round times of day in a time zone, and what is written beside them.
namespace TimeTicks {

struct Tick
{
    qint64 timeMs; ///< since 1970 in UTC
    QString text;  ///< in the zone, as fine as the marks' distance needs: "12:30", "12:30:15", "03-31"
};

/// Marks from \p beginMs to \p endMs with about \p most intervals between them; none when end is not after begin.
///
/// Round is what the zone's offset at the end makes round: before a change to or from daylight saving time inside the
/// range, marks stand at the same distance and their texts say the time that it was then.
KORVANE_HOST_EXPORT std::vector<Tick> between(qint64 beginMs, qint64 endMs, int most, const QTimeZone& zone);

} // namespace TimeTicks
