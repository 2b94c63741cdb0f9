#pragma once

#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"

#include <QString>

#include <optional>

class QuorixData;

/// Which points the summary shows.
struct KORVANE_HOST_EXPORT SummaryFilter
{
    QString text;                        ///< in name, description, station or area, in whatever case
    std::optional<QString> station = {}; ///< empty for the points of none
    std::optional<QString> area = {};    ///< empty for the points of none
    bool isMarkedOnly = false;           ///< with any mark
    bool isUnreliableOnly = false;       ///< whose value nothing may be concluded from

    /// Whether samples change what it accepts.
    bool isLive() const { return isMarkedOnly || isUnreliableOnly; }
    /// Whether it accepts a point, whatever its marks.
    bool acceptsObject(const RuntimeDatabase::Object& object) const;
    /// Whether it accepts a point's marks.
    bool acceptsMarks(const QuorixData& record) const;
};
