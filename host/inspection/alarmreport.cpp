#include "host/inspection/alarmreport.h"

#include "host/alarms/alarmsystem.h"
#include "host/alarms/alarmtexts.h"
#include "host/alarmview/alarmlogmodel.h"

namespace {

QString lineText(const AlarmTransition& line)
{
    QString text = line.time.toUTC().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz  "));
    if (line.kind == AlarmTransition::Kind::Event)
        return text + line.alarm.message;
    text += AlarmTexts::kind(line.kind);
    if (line.alarm.id == 0)
        text += QStringLiteral("  ") + AlarmLogModel::tagOf(line);
    else {
        text += QStringLiteral("  %1  %2  ").arg(line.alarm.severity).arg(line.alarm.tag) + line.alarm.message +
                QStringLiteral(" (%1)").arg(AlarmTexts::state(line.alarm.state));
    }
    return text;
}

} // namespace

QString AlarmReport::text(AlarmSystem& alarms, int most)
{
    alarms.commit();
    AlarmLog::Query query;
    query.most = most;
    QString report;
    if (const auto lines = alarms.log().read(query)) {
        for (auto line = lines->rbegin(); line != lines->rend(); ++line)
            report += lineText(*line) + QLatin1Char('\n');
    } else {
        report += lines.error() + QLatin1Char('\n');
    }
    return report + QStringLiteral("%1 alarms stand, %2 of them unacknowledged\n")
                        .arg(alarms.manager().count())
                        .arg(alarms.manager().unacknowledgedCount({}));
}
