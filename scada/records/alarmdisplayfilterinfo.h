#pragma once

#include "scada/scadaexport.h"

#include <QList>
#include <QMap>
#include <QString>

/// What the alarm list shows. Kept as a settings string, a JSON text that the record writes and reads; see
/// docs/stored-records.md.
struct KORVANE_SCADA_EXPORT AlarmDisplayFilterInfo
{
    bool subjectToUserAor = true; ///< only alarms of the user's own areas of responsibility
    bool showToolBar = false;
    QList<int> severities;
    QList<int> areas;            ///< of responsibility
    QMap<int, int> displayItems; ///< keys and values are the alarm list's own

    QString toSettingInfo() const;
    /// Takes from a settings string what it says; the lists and the display items are replaced as a whole. The tool bar
    /// is shown unless the string says otherwise, even when it is malformed, which changes nothing else.
    void fromSettingInfo(const QString& text);

    bool isEqual(const AlarmDisplayFilterInfo& other) const;
};
