#include "host/inspection/alarmreport.h"

#include "host/alarms/alarmsystem.h"
#include "host/alarms/alarmtexts.h"

namespace {

QString lineText(const AlarmTransition& line)
{
    QString text = line.time.toUTC().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz  "));
    if (line.kind == AlarmTransition::Kind::Event)
        return text + line.alarm.message;
    text += AlarmTexts::kind(line.kind);
    if (line.alarm.id == 0) // of the object itself
        return text + QStringLiteral("  ") + AlarmTexts::tag(line.alarm);
    return text + QStringLiteral("  %1  ").arg(line.alarm.severity) + line.alarm.tag + QStringLiteral("  ") +
           line.alarm.message + QStringLiteral(" (%1)").arg(AlarmTexts::state(line.alarm.state));
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
