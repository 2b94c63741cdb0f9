#pragma once

#include "host/alarms/alarmmanager.h"
#include "host/hostexport.h"
#include "platform/data/scadaalarm.h"

#include <QString>
#include <QVariant>
#include <Qt>

/// The columns of the alarm list, and how it is sorted by them.
class KORVANE_HOST_EXPORT AlarmListOrder
{
public:
    /// Numbers are kept: users' settings name columns by them.
    enum Column {
        Severity = 0,
        Raised = 1,
        State = 2,
        Area = 3,
        Tag = 4,
        Message = 5,
        Value = 6,
        Limit = 7,
        Cause = 8,
        Returned = 9,
        Acknowledged = 10,
        AcknowledgedBy = 11,
        ShelvedUntil = 12,
        ShelvedBy = 13,
        ColumnCount = 14,
    };

    /// An alarm of the list.
    struct Item
    {
        ScadaAlarm alarm;
        AlarmManager::Shelf shelf = {};
        int area = 0;           ///< number
        int row = -1;           ///< where it is shown; -1 while it is not
        bool isInScope = false; ///< the filter accepts it in whatever state
        qint64 raisedMs = 0;    ///< of the alarm, since 1970-01-01 UTC
    };

    /// What the list says of an alarm in a column: a number, a time in UTC, or a text; invalid for nothing.
    static QVariant value(const Item& item, int column);

    /// \param column for any other, the list's own order: what waits for an operator first, then the higher severity,
    ///        then the newest
    void set(int column, Qt::SortOrder order);
    /// Whether \p a comes before \p b. Items that are equal in the column follow each other in the list's own order.
    bool operator()(const Item* a, const Item* b) const;

private:
    int m_column = -1;
    bool m_isDescending = false;
};
