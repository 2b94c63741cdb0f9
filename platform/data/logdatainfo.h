#pragma once

#include <QString>

/// Which past period a logged target reads: the one that lies `periodsBack` whole periods before the running one. Which
/// statistic of that period is read, the target's field says.
struct LogDataInfo
{
    enum class Period { Minute, Hour, Day, Week, Month, Year };

    QString pointName;
    Period period = Period::Hour;
    int periodsBack = 1; ///< 0 is the running period

    friend bool operator==(const LogDataInfo& a, const LogDataInfo& b)
    {
        return a.pointName == b.pointName && a.period == b.period && a.periodsBack == b.periodsBack;
    }
    friend bool operator!=(const LogDataInfo& a, const LogDataInfo& b) { return !(a == b); }
};
