#pragma once

#include <QColor>
#include <QString>

/// How alarms of one severity are presented.
struct AlarmSeverityData
{
    int severity = 0; ///< that the entry describes
    QString soundPath;
    bool usePopup = false;
    QColor textColor; ///< invalid for the list's own

    friend bool operator==(const AlarmSeverityData& a, const AlarmSeverityData& b)
    {
        return a.severity == b.severity && a.soundPath == b.soundPath && a.usePopup == b.usePopup &&
               a.textColor == b.textColor;
    }
    friend bool operator!=(const AlarmSeverityData& a, const AlarmSeverityData& b) { return !(a == b); }
};
