#pragma once

#include "host/hostexport.h"
#include "platform/data/scadaalarm.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <bitset>
#include <optional>

/// Which alarms the alarm list shows. Whatever a part of it leaves empty limits nothing.
struct KORVANE_HOST_EXPORT AlarmFilter
{
    static constexpr std::size_t stateCount = 7;
    using States = std::bitset<stateCount>; ///< by ScadaAlarm::State

    static States statesOf(std::initializer_list<ScadaAlarm::State> states);
    /// Those that an operator has to do with: unacknowledged, acknowledged, returned unacknowledged.
    static States standing();

    QList<int> severities;
    QList<int> areas;           ///< by the numbers of AlarmAreas
    States states = standing(); ///< exactly these, none too
    QString text;               ///< in the tag or the message, in whatever case
    /// The user's own areas, where the list is limited to them. An alarm of no area is everybody's: nobody else would
    /// see it.
    std::optional<QStringList> userAreas;

    /// \param area number of the alarm's area
    bool accepts(const ScadaAlarm& alarm, int area) const;
    /// The same in whatever state the alarm is.
    bool acceptsInAnyState(const ScadaAlarm& alarm, int area) const;
};
