#include "host/inspection/alarmreport.h"
#include "tests/support/alarmplant.h"

#include <QtTest>

namespace {

QString joined(const QStringList& lines)
{
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

constexpr int plenty = 50;

} // namespace

class tst_AlarmReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAnAlarmItCounts()
    {
        AlarmPlant plant;
        QCOMPARE(AlarmReport::text(plant.system, plenty), text("0 alarms stand, 0 of them unacknowledged\n"));
    }

    void linesComeInTheirOrder()
    {
        AlarmPlant plant;
        plant.system.addEvent(text("plant started"));
        plant.passSeconds(1);
        const quint64 id = plant.raise(9, text("pump stopped"));
        plant.raise(3, text("valve 밸브 closed"));
        plant.passSeconds(2);
        plant.manager().returnAlarm(id, plant.now);
        plant.passSeconds(1);
        plant.manager().acknowledge(id, text("kim"));
        // What waits for the end of the event loop's pass is told too.
        QCOMPARE(AlarmReport::text(plant.system, plenty),
                 joined({text("2026-03-01 08:00:00.000  plant started"),
                         text("2026-03-01 08:00:01.000  raised  9  P1  pump stopped (unacknowledged)"),
                         text("2026-03-01 08:00:01.000  raised  3  P2  valve 밸브 closed (unacknowledged)"),
                         text("2026-03-01 08:00:03.000  returned  9  P1  pump stopped (returned unacknowledged)"),
                         text("2026-03-01 08:00:04.000  acknowledged  9  P1  pump stopped (normal)"),
                         text("1 alarms stand, 1 of them unacknowledged")}));
    }

    void signsOfFormattingStandAsTheyAre()
    {
        AlarmPlant plant;
        ScadaAlarm alarm = plant.alarmOf(4, text("%3 at %1%"));
        alarm.tag = text("%2");
        plant.manager().raiseAlarm(alarm);
        QCOMPARE(AlarmReport::text(plant.system, plenty),
                 joined({text("2026-03-01 08:00:00.000  raised  4  %2  %3 at %1% (unacknowledged)"),
                         text("1 alarms stand, 1 of them unacknowledged")}));
    }

    void anObjectIsNamedByItsId()
    {
        AlarmPlant plant;
        const ObjectKey unit{Korvane::ScadaObjectType::RtuObject, 7};
        const ObjectKey point{Korvane::ScadaObjectType::AnalogPoint, 200009};
        plant.manager().setOutOfService(unit, true, text("kim"), text("cleaning"));
        plant.manager().setSuppressed(point, true, text("pump is off"));
        QCOMPARE(AlarmReport::text(plant.system, plenty),
                 joined({text("2026-03-01 08:00:00.000  taken out of service  @R::#7"),
                         text("2026-03-01 08:00:00.000  suppressed  #200009"),
                         text("0 alarms stand, 0 of them unacknowledged")}));
    }

    void theNewestLinesAreTold()
    {
        AlarmPlant plant;
        for (int number = 1; number <= 4; ++number)
            plant.raise(number, text("alarm %1").arg(number));
        QCOMPARE(AlarmReport::text(plant.system, 2),
                 joined({text("2026-03-01 08:00:00.000  raised  3  P3  alarm 3 (unacknowledged)"),
                         text("2026-03-01 08:00:00.000  raised  4  P4  alarm 4 (unacknowledged)"),
                         text("4 alarms stand, 4 of them unacknowledged")}));
    }

    void timesAreUtc()
    {
        AlarmPlant plant;
        ScadaAlarm alarm = plant.alarmOf(5, text("late"));
        alarm.raised = QDateTime(QDate(2026, 3, 1), QTime(1, 30, 0, 7), Qt::OffsetFromUTC, 2 * 3600);
        plant.manager().raiseAlarm(alarm);
        QVERIFY(AlarmReport::text(plant.system, plenty)
                    .startsWith(text("2026-02-28 23:30:00.007  raised  5  P1  late (unacknowledged)\n")));
    }
};

QTEST_GUILESS_MAIN(tst_AlarmReport)
#include "tst_alarmreport.moc"
