#include "host/runtime/statisticscalendar.h"

#include "tests/support/slowcalendar.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

constexpr qint64 minute = 60000;
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;

qint64 utc(const char* text)
{
    const QDateTime time = QDateTime::fromString(QString::fromLatin1(text) + QLatin1Char('Z'), Qt::ISODate);
    Q_ASSERT(time.isValid());
    return time.toMSecsSinceEpoch();
}

QString text(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC).toString(Qt::ISODate);
}

} // namespace

class tst_StatisticsCalendar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!QTimeZone::isTimeZoneIdAvailable("Europe/Berlin")) // the empty text is for clang's sake
            QSKIP("this machine has no time zone database (package tzdata)", "");
    }

    void hours_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QByteArray>("moment");
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<QByteArray>("end");
        const auto row = [](const char* name, const char* zone, const char* moment, const char* start,
                            const char* end) {
            QTest::newRow(name) << QByteArray(zone) << QByteArray(moment) << QByteArray(start) << QByteArray(end);
        };
        row("an hour begins with its first millisecond", "UTC", "2024-05-01T10:00:00", "2024-05-01T10:00:00",
            "2024-05-01T11:00:00");
        row("an hour ends before the next one's first millisecond", "UTC", "2024-05-01T10:59:59.999",
            "2024-05-01T10:00:00", "2024-05-01T11:00:00");
        row("before 1970 hours begin earlier, too", "UTC", "1969-12-31T23:30:00", "1969-12-31T23:00:00",
            "1970-01-01T00:00:00");
        row("a zone beside the full hour has its own full hours", "Asia/Kolkata", "2024-05-01T10:15:00",
            "2024-05-01T09:30:00", "2024-05-01T10:30:00");
        row("the clock put forward by an hour leaves full hours", "Europe/Berlin", "2024-03-31T00:30:00",
            "2024-03-31T00:00:00", "2024-03-31T01:00:00");
        row("the clock put back by an hour leaves full hours", "Europe/Berlin", "2024-10-27T01:30:00",
            "2024-10-27T01:00:00", "2024-10-27T02:00:00");
        row("half an hour put back: the hour before it ends with it", "Australia/Lord_Howe", "2024-04-06T14:40:00",
            "2024-04-06T14:00:00", "2024-04-06T15:00:00");
        row("half an hour put back: then half an hour until the full hour", "Australia/Lord_Howe",
            "2024-04-06T15:10:00", "2024-04-06T15:00:00", "2024-04-06T15:30:00");
        row("half an hour put forward: the hour begins half over", "Australia/Lord_Howe", "2024-10-05T15:45:00",
            "2024-10-05T15:30:00", "2024-10-05T16:00:00");
        row("put back a minute after midnight: that minute is an hour", "America/St_Johns", "2006-10-29T02:30:30",
            "2006-10-29T02:30:00", "2006-10-29T02:31:00");
    }
    void hours()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QByteArray, moment);
        QFETCH(QByteArray, start);
        QFETCH(QByteArray, end);

        const StatisticsCalendar calendar{QTimeZone(zone)};
        QCOMPARE(text(calendar.hourStart(utc(moment))), text(utc(start)));
        QCOMPARE(text(calendar.hourEnd(utc(moment))), text(utc(end)));
        QCOMPARE(text(calendar.hourEnd(utc(end) - 1)), text(utc(end)));
        QCOMPARE(text(calendar.hourStart(utc(end))), text(utc(end)));
    }

    void endsOfPeriods_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QByteArray>("hourEnd");
        QTest::addColumn<QString>("ending");
        const auto row = [](const char* name, const char* zone, const char* hourEnd, const char* ending) {
            QTest::newRow(name) << QByteArray(zone) << QByteArray(hourEnd) << QString::fromLatin1(ending);
        };
        row("an hour of the day", "UTC", "2024-05-01T10:00:00", "");
        row("midnight", "UTC", "2024-05-02T00:00:00", "D");
        row("local midnight", "Europe/Berlin", "2024-05-01T22:00:00", "D");
        row("midnight of UTC is none of Berlin", "Europe/Berlin", "2024-05-02T00:00:00", "");
        row("a Monday begins", "UTC", "2024-05-06T00:00:00", "DW");
        row("a Sunday begins", "UTC", "2024-05-05T00:00:00", "D");
        row("February 29 begins", "UTC", "2024-02-29T00:00:00", "D");
        row("the month ends after February 29", "UTC", "2024-03-01T00:00:00", "DM");
        row("a year ends within a week", "UTC", "2025-01-01T00:00:00", "DMY");
        row("a year ends with a week", "UTC", "2024-01-01T00:00:00", "DWMY");
        row("a year ends by the local clock", "Australia/Lord_Howe", "2024-12-31T13:00:00", "DMY");
        row("the clock is put forward at night", "Europe/Berlin", "2024-03-31T01:00:00", "");
        row("midnight is skipped", "America/Sao_Paulo", "2018-11-04T03:00:00", "D");
        row("the clock is put back at midnight: the day goes on", "America/Sao_Paulo", "2018-02-18T02:00:00", "");
        row("... until the clock reaches midnight again", "America/Sao_Paulo", "2018-02-18T03:00:00", "D");
        row("the clock reaches midnight", "America/St_Johns", "2006-10-29T02:30:00", "D");
        row("... and is put back across it a minute later", "America/St_Johns", "2006-10-29T02:31:00", "D");
        row("... and reaches it again", "America/St_Johns", "2006-10-29T03:30:00", "D");
        row("a whole day is skipped", "Pacific/Apia", "2011-12-30T10:00:00", "D");
    }
    void endsOfPeriods()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QByteArray, hourEnd);
        QFETCH(QString, ending);

        const StatisticsCalendar calendar{QTimeZone(zone)};
        QString found;
        for (const auto period :
             {StatisticsCalendar::Day, StatisticsCalendar::Week, StatisticsCalendar::Month, StatisticsCalendar::Year}) {
            if (calendar.endsWithHour(period, utc(hourEnd)))
                found += QLatin1String("DWMY")[period];
        }
        QCOMPARE(found, ending);
        QCOMPARE(calendar.hourStart(utc(hourEnd)), utc(hourEnd));
    }

    void agreesWithTheClockOfEveryMinute_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QByteArray>("from");
        const auto row = [](const char* name, const char* zone, const char* from) {
            QTest::newRow(name) << QByteArray(zone) << QByteArray(from);
        };
        row("Berlin in spring", "Europe/Berlin", "2024-03-28T00:00:00");
        row("Berlin in autumn", "Europe/Berlin", "2024-10-24T00:00:00");
        row("Berlin in the autumn of a year to come", "Europe/Berlin", "2061-10-26T00:00:00");
        row("Lord Howe in spring", "Australia/Lord_Howe", "2024-10-03T00:00:00");
        row("Lord Howe in autumn", "Australia/Lord_Howe", "2024-04-04T00:00:00");
        row("Sao Paulo without midnight", "America/Sao_Paulo", "2018-11-01T00:00:00");
        row("Sao Paulo with two hours before midnight", "America/Sao_Paulo", "2018-02-15T00:00:00");
        row("St. John's across midnight", "America/St_Johns", "2006-10-26T00:00:00");
        row("Apia without a December 30", "Pacific/Apia", "2011-12-27T00:00:00");
        row("Kathmandu at the end of a year", "Asia/Kathmandu", "2023-12-28T00:00:00");
        row("UTC around February 29", "UTC", "2024-02-26T00:00:00");
    }
    void agreesWithTheClockOfEveryMinute()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QByteArray, from);

        const qint64 begin = utc(from);
        const SlowCalendar slow(QTimeZone(zone), begin, begin + 7 * day);
        const StatisticsCalendar calendar{QTimeZone(zone)};
        QVERIFY(slow.bounds().size() >= 7 * 23);
        for (std::size_t i = 1; i < slow.bounds().size(); ++i) {
            const qint64 start = slow.bounds()[i - 1].ms;
            const qint64 end = slow.bounds()[i].ms;
            QCOMPARE(text(calendar.hourStart(end - 1)), text(start));
            QCOMPARE(text(calendar.hourEnd(start)), text(end));
            for (const auto period : {SlowCalendar::Day, SlowCalendar::Week, SlowCalendar::Month, SlowCalendar::Year}) {
                const auto same = StatisticsCalendar::Period(period - SlowCalendar::Day);
                QCOMPARE(calendar.endsWithHour(same, end), (slow.bounds()[i].ends & (1U << period)) != 0);
            }
        }
    }

    void periodsBeginWhereTheOnesBeforeEnd()
    {
        const StatisticsCalendar calendar(QTimeZone("Europe/Berlin"));
        const qint64 moment = utc("2024-11-15T12:34:56");
        QCOMPARE(text(calendar.periodStart(StatisticsCalendar::Day, moment)), text(utc("2024-11-14T23:00:00")));
        QCOMPARE(text(calendar.periodStart(StatisticsCalendar::Week, moment)), text(utc("2024-11-10T23:00:00")));
        QCOMPARE(text(calendar.periodStart(StatisticsCalendar::Month, moment)), text(utc("2024-10-31T23:00:00")));
        QCOMPARE(text(calendar.periodStart(StatisticsCalendar::Year, moment)), text(utc("2023-12-31T23:00:00")));
    }

    void anyOrderOfQuestionsHasTheSameAnswers()
    {
        const QTimeZone zone("Europe/Berlin");
        const StatisticsCalendar used(zone);
        QRandomGenerator random(7);
        const qint64 from = utc("2020-01-01T00:00:00");
        for (int i = 0; i < 2000; ++i) {
            const qint64 moment = from + random.bounded(10 * 365) * day + random.bounded(int(day));
            const StatisticsCalendar fresh(zone);
            QCOMPARE(used.hourStart(moment), fresh.hourStart(moment));
            QCOMPARE(used.hourEnd(moment), fresh.hourEnd(moment));
            QCOMPARE(used.periodStart(StatisticsCalendar::Year, moment),
                     fresh.periodStart(StatisticsCalendar::Year, moment));
        }
    }

    void anInvalidZoneStandsForUtc()
    {
        const StatisticsCalendar calendar{QTimeZone()};
        QCOMPARE(text(calendar.hourEnd(utc("2024-05-01T10:15:00"))), text(utc("2024-05-01T11:00:00")));
    }

    void theFirstAndTheLastYearHaveHours()
    {
        const StatisticsCalendar calendar(QTimeZone("Europe/Berlin"));
        for (const char* moment : {"0001-01-01T00:00:00", "9999-12-31T23:59:59"}) {
            const qint64 ms = utc(moment);
            QVERIFY(calendar.hourStart(ms) <= ms);
            QVERIFY(calendar.hourEnd(ms) > ms);
            QVERIFY(calendar.hourEnd(ms) - calendar.hourStart(ms) <= hour);
        }
    }
};

QTEST_GUILESS_MAIN(tst_StatisticsCalendar)
#include "tst_statisticscalendar.moc"
