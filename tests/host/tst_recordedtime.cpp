#include "host/sources/recordedtime.h"

#include <QtTest>

Q_DECLARE_METATYPE(std::optional<qint64>)

class tst_RecordedTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTimes_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<std::optional<qint64>>("expected");
        const auto row = [](const char* name, const char* zone, const char* text, std::optional<qint64> expected) {
            QTest::newRow(name) << QByteArray(zone) << QByteArray(text) << expected;
        };
        // 2020-02-08 13:30:47 UTC is 1581168647 s by date(1).
        row("local time in UTC", "UTC", "2020-02-08 13:30:47", 1581168647000);
        row("a fraction", "UTC", "2020-02-08 13:30:47.25", 1581168647250);
        row("beyond the millisecond", "UTC", "2020-02-08 13:30:47.2509999", 1581168647250);
        row("a fraction behind a comma", "UTC", "2020-02-08 13:30:47,007", 1581168647007);
        row("with a T", "UTC", "2020-02-08T13:30:47", 1581168647000);
        row("local time in Seoul", "Asia/Seoul", "2020-02-08 22:30:47", 1581168647000);
        row("UTC wherever the zone", "Asia/Seoul", "2020-02-08T13:30:47Z", 1581168647000);
        row("an offset", "Asia/Seoul", "2020-02-08T09:00:47.5-04:30", 1581168647500);
        row("an offset without a colon", "UTC", "2020-02-08 22:30:47+0900", 1581168647000);
        row("an offset of hours", "UTC", "2020-02-08T22:30:47+09", 1581168647000);
        row("winter in Berlin", "Europe/Berlin", "2020-02-08 14:30:47", 1581168647000);
        row("summer in Berlin", "Europe/Berlin", "2020-07-01 02:00:00", 1593561600000);
        row("a leap day", "UTC", "2020-02-29 00:00:00", 1582934400000);
        row("before 1970", "UTC", "1969-12-31 23:59:59.5", -500);
        row("before 1970 in Seoul", "Asia/Seoul", "1970-01-01 08:59:59", -1000);
        row("the first year", "UTC", "0001-01-01 00:00:00", -62135596800000);
        row("the last moment", "UTC", "9999-12-31 23:59:59.999", 253402300799999);
        row("seconds", "Asia/Seoul", "1581168647", 1581168647000);
        row("seconds with decimals", "UTC", "1581168647.123", 1581168647123);
        row("milliseconds", "UTC", "1581168647250", 1581168647250);
        row("zero", "UTC", "0", 0);
        row("the last number of seconds", "UTC", "99999999999", 99999999999000);
        row("the first number of milliseconds", "UTC", "100000000000", 100000000000);

        row("empty", "UTC", "", {});
        row("a word", "UTC", "noon", {});
        row("no seconds", "UTC", "2020-02-08 13:30", {});
        row("a day that is none", "UTC", "2021-02-29 00:00:00", {});
        row("a month that is none", "UTC", "2020-13-01 00:00:00", {});
        row("the hour 24", "UTC", "2020-02-08 24:00:00", {});
        row("the second 60", "UTC", "2020-02-08 13:30:60", {});
        row("a point without a fraction", "UTC", "2020-02-08 13:30:47.", {});
        row("text behind", "UTC", "2020-02-08 13:30:47 CET", {});
        row("text behind an offset", "UTC", "2020-02-08 13:30:47+09:00Z", {});
        row("an offset of days", "UTC", "2020-02-08 13:30:47+24:00", {});
        row("one digit", "UTC", "2020-02-08 13:30:4", {});
        row("day first", "UTC", "08.02.2020 13:30:47", {});
        row("a number beyond all years", "UTC", "9e18", {});
        row("the year 0", "UTC", "0000-01-01 00:00:00", {});
    }

    void readsTimes()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QByteArray, text);
        QFETCH(std::optional<qint64>, expected);
        RecordedTime time{QTimeZone(zone)};
        const std::string_view view(text.constData(), std::size_t(text.size()));
        QCOMPARE(time.read(view), expected);
        QCOMPARE(time.read(view), expected); // from what it remembers of the minute
    }

    void anHourThatComesTwiceGoesOn()
    {
        RecordedTime time{QTimeZone("Europe/Berlin")};
        const qint64 midnight = time.read("2020-10-25 00:00:00").value(); // clocks go back from 3 to 2
        qint64 last = midnight;
        const std::vector<std::pair<const char*, int>> rows = {
            {"2020-10-25 01:59:59", 7199},  {"2020-10-25 02:00:00", 7200},  {"2020-10-25 02:59:59", 10799},
            {"2020-10-25 02:00:00", 10800}, {"2020-10-25 02:30:00", 12600}, {"2020-10-25 02:59:59", 14399},
            {"2020-10-25 03:00:00", 14400},
        };
        for (const auto& [text, seconds] : rows) {
            last = time.read(text, last).value();
            QCOMPARE(last, midnight + seconds * 1000);
        }
        QCOMPARE(time.read("2020-10-25 02:00:00").value(), midnight + 7200 * 1000);
    }

    void anInvalidZoneIsUtc()
    {
        RecordedTime time{QTimeZone()};
        QCOMPARE(time.read("1970-01-01 00:00:01").value(), qint64(1000));
    }
};

QTEST_APPLESS_MAIN(tst_RecordedTime)
#include "tst_recordedtime.moc"
