#pragma once

#include "host/hostexport.h"
#include "scada/records/alarmdatainfo.h"
#include "scada/records/alarmdisplayfilterinfo.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <chrono>

class QJsonObject;

/// How a project wants its alarms to be heard and shown: the member "alarms" of its file.
struct KORVANE_HOST_EXPORT AlarmPresentation
{
    static constexpr std::chrono::milliseconds longestPause{3600000};

    /// Sound, popup and text colour of each severity; sounds are absolute paths.
    AlarmDataInfo severities;
    /// What the alarm list shows at first.
    AlarmDisplayFilterInfo filter;
    /// Areas of responsibility in the order of their numbers, from 1.
    QStringList areas;
    /// From the end of a sound, or of what is spoken after it, to the sound again.
    std::chrono::milliseconds repeatAfter{2000};
    /// From the last announcement to the next of alarms that nobody has acknowledged since; 0 for never.
    std::chrono::milliseconds remindAfter{300000};

    AlarmPresentation();

    /// \param object "severities" and "filter" (settings strings of their records, as objects), "colours" (colour names by
    ///        severity), "areas", "repeatMs", "remindMs", "isSpoken", "isPopupShown"; what is absent is as by default
    /// \param folder that sounds are seen from
    /// \returns what is wrong, naming the member.
    static tl::expected<AlarmPresentation, QString> read(const QJsonObject& object, const QString& folder);
};
