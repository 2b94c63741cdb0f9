#include "host/runtime/pointstatistics.h"

#include "tests/host/slowstatistics.h"

#include <QRandomGenerator>
#include <QtTest>

#include <map>

using DataCode::DataField;
using Kind = PointStatistics::Kind;

namespace {

constexpr qint64 second = 1000;
constexpr qint64 minute = 60 * second;
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;

qint64 utc(const char* text)
{
    const QDateTime time = QDateTime::fromString(QString::fromLatin1(text) + QLatin1Char('Z'), Qt::ISODate);
    Q_ASSERT(time.isValid());
    return time.toMSecsSinceEpoch();
}

QVariant moment(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
}

struct PeriodFields
{
    SlowCalendar::Period period;
    DataField maximum, minimum, mean, accumulated, minimumTime, maximumTime;
    DataField onCount, offCount, onDuration, offDuration; // Unknown where there is none
};

constexpr SlowCalendar::Period total = SlowCalendar::Period(5);

#define ANALOG(Name)                                                                                                   \
    DataField::Name##Maximum, DataField::Name##Minimum, DataField::Name##Mean, DataField::Name##Accumulated,           \
        DataField::Name##MinimumTime, DataField::Name##MaximumTime
#define DIGITAL(Name)                                                                                                  \
    DataField::Name##OnCount, DataField::Name##OffCount, DataField::Name##OnDuration, DataField::Name##OffDuration

constexpr PeriodFields fieldsOfPeriods[] = {
    {SlowCalendar::Hour, ANALOG(Hour), DIGITAL(Hour)},
    {SlowCalendar::Day, ANALOG(Today), DIGITAL(Today)},
    {SlowCalendar::Week, ANALOG(Week), DataField::Unknown, DataField::Unknown, DataField::Unknown, DataField::Unknown},
    {SlowCalendar::Month, ANALOG(Month), DIGITAL(Month)},
    {SlowCalendar::Year, ANALOG(Year), DIGITAL(Year)},
    {total, ANALOG(Total), DIGITAL(Total)},
};

/// One object of a kind in a zone, and what it says.
class Subject
{
public:
    explicit Subject(Kind kind, qint64 staleAfterMs = 0, const char* zone = "UTC")
        : m_kind(kind), m_staleAfterMs(staleAfterMs), m_calendar(QTimeZone(zone)), m_statistics(kind, staleAfterMs)
    {
    }
    bool take(qint64 ms, double value, qint32 quality = 0) { return m_statistics.take(ms, value, quality, m_calendar); }
    void setFailed(bool failed, qint64 ms) { m_statistics.setFailed(failed, ms, m_calendar); }
    void interrupt(qint64 ms) { m_statistics.interrupt(ms, m_calendar); }
    QVariant read(DataField field, qint64 now) const { return m_statistics.fieldValue(field, now, m_calendar); }
    bool goesThroughBytes()
    {
        PointStatistics other(m_kind, m_staleAfterMs);
        const bool isRead = other.fromBytes(m_statistics.toBytes());
        m_statistics = other;
        return isRead;
    }

private:
    Kind m_kind;
    qint64 m_staleAfterMs;
    StatisticsCalendar m_calendar;
    PointStatistics m_statistics;
};

bool isNear(const QVariant& found, double expected)
{
    return found.isValid() && std::abs(found.toDouble() - expected) <= 1e-9 * std::max(1.0, std::abs(expected));
}

QString compareAnalog(const Subject& subject, const PeriodFields& fields, const SlowStatistics::Figures& expected,
                      qint64 now)
{
    const auto read = [&](DataField field) { return subject.read(field, now); };
    if (!expected.isKnown) {
        for (const DataField field : {fields.maximum, fields.minimum, fields.mean, fields.accumulated}) {
            if (read(field).isValid())
                return QStringLiteral("field %1 is known").arg(int(field));
        }
        return {};
    }
    if (read(fields.minimum) != QVariant(expected.minimum) || read(fields.maximum) != QVariant(expected.maximum))
        return QStringLiteral("extremes %1 %2, expected %3 %4")
            .arg(read(fields.minimum).toString(), read(fields.maximum).toString())
            .arg(expected.minimum)
            .arg(expected.maximum);
    if (read(fields.minimumTime) != moment(expected.minimumTime) ||
        read(fields.maximumTime) != moment(expected.maximumTime))
        return QStringLiteral("times of extremes %1 %2, expected %3 %4")
            .arg(read(fields.minimumTime).toString(), read(fields.maximumTime).toString(),
                 moment(expected.minimumTime).toString(), moment(expected.maximumTime).toString());
    if (!isNear(read(fields.accumulated), expected.integral / 3600))
        return QStringLiteral("accumulated %1, expected %2")
            .arg(read(fields.accumulated).toDouble(), 0, 'g', 17)
            .arg(expected.integral / 3600, 0, 'g', 17);
    if (expected.knownSeconds > 0 ? !isNear(read(fields.mean), expected.integral / expected.knownSeconds)
                                  : read(fields.mean).isValid())
        return QStringLiteral("mean %1").arg(read(fields.mean).toString());
    return {};
}

QString compareDigital(const Subject& subject, const PeriodFields& fields, const SlowStatistics::Figures& expected,
                       qint64 now)
{
    if (fields.onCount == DataField::Unknown)
        return {};
    const QVariant found[] = {subject.read(fields.onCount, now), subject.read(fields.offCount, now),
                              subject.read(fields.onDuration, now), subject.read(fields.offDuration, now)};
    if (!expected.isKnown) {
        const bool isUnknown = std::none_of(std::begin(found), std::end(found), [](auto& v) { return v.isValid(); });
        return isUnknown ? QString() : QStringLiteral("something is known");
    }
    if (found[0] != QVariant(expected.onCount) || found[1] != QVariant(expected.offCount))
        return QStringLiteral("counts %1 %2, expected %3 %4")
            .arg(found[0].toString(), found[1].toString())
            .arg(expected.onCount)
            .arg(expected.offCount);
    if (!isNear(found[2], expected.onSeconds) || !isNear(found[3], expected.knownSeconds - expected.onSeconds))
        return QStringLiteral("durations %1 %2, expected on %3, known %4")
            .arg(found[2].toString(), found[3].toString())
            .arg(expected.onSeconds)
            .arg(expected.knownSeconds);
    return {};
}

/// What differs from the slow statistics at \p now; empty when nothing does.
QString difference(const Subject& subject, Kind kind, const SlowStatistics& slow, const SlowCalendar& calendar,
                   qint64 now)
{
    auto* const compare = kind == Kind::Analog ? compareAnalog : compareDigital;
    for (const PeriodFields& fields : fieldsOfPeriods) {
        const qint64 start = fields.period == total ? 0 : calendar.start(fields.period, now);
        const QString text = compare(subject, fields, slow.figures(start, now, true), now);
        if (!text.isEmpty())
            return QStringLiteral("period %1: %2").arg(int(fields.period)).arg(text);
    }
    const qint64 hourStart = calendar.start(SlowCalendar::Hour, now);
    double value = 0;
    const QVariant found = subject.read(DataField::PastMoment, now);
    const bool isKnown = slow.valueAt(hourStart, value);
    if (found.isValid() != isKnown || (isKnown && found.toDouble() != value))
        return QStringLiteral("past moment %1, expected %2").arg(found.toString()).arg(value);
    if (kind == Kind::Digital)
        return {};
    const PeriodFields past{SlowCalendar::Hour,  DataField::PastMaximum,     DataField::PastMinimum,
                            DataField::PastMean, DataField::PastAccumulated, DataField::Unknown,
                            DataField::Unknown,  DataField::Unknown,         DataField::Unknown,
                            DataField::Unknown,  DataField::Unknown};
    auto expected = slow.figures(calendar.start(SlowCalendar::Hour, hourStart - 1), hourStart, false);
    const auto near = [&](DataField field, double number) { return isNear(subject.read(field, now), number); };
    if (!expected.isKnown)
        return subject.read(past.maximum, now).isValid() ? QStringLiteral("the past hour is known") : QString();
    const bool isSame = near(past.maximum, expected.maximum) && near(past.minimum, expected.minimum) &&
                        near(past.accumulated, expected.integral / 3600) &&
                        (expected.knownSeconds <= 0 || near(past.mean, expected.integral / expected.knownSeconds));
    return isSame ? QString() : QStringLiteral("the past hour differs");
}

} // namespace

class tst_PointStatistics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!QTimeZone::isTimeZoneIdAvailable("Europe/Berlin")) // the empty text is for clang's sake
            QSKIP("this machine has no time zone database (package tzdata)", "");
    }

    void aMeanIsWeightedWithTime()
    {
        Subject flow(Kind::Analog);
        const qint64 start = utc("2024-05-01T10:00:00");
        flow.take(start, 10);
        flow.take(start + 15 * minute, 30);
        const qint64 now = start + 20 * minute;
        // 15 minutes of 10 and 5 minutes of 30: (150 + 150) / 20.
        QCOMPARE(flow.read(DataField::HourMean, now), QVariant(15.0));
        QCOMPARE(flow.read(DataField::HourAccumulated, now), QVariant(5.0));
        QCOMPARE(flow.read(DataField::HourMinimum, now), QVariant(10.0));
        QCOMPARE(flow.read(DataField::HourMaximum, now), QVariant(30.0));
        QCOMPARE(flow.read(DataField::HourMinimumTime, now), moment(start));
        QCOMPARE(flow.read(DataField::HourMaximumTime, now), moment(start + 15 * minute));
        QCOMPARE(flow.read(DataField::TotalMean, now), QVariant(15.0));
        QCOMPARE(flow.read(DataField::HourMaximumTime, now).toDateTime().timeSpec(), Qt::UTC);
    }

    void theFirstTimeOfAnExtremeCounts()
    {
        Subject flow(Kind::Analog);
        const qint64 start = utc("2024-05-01T10:00:00");
        for (const double value : {1.0, 5.0, 1.0, 5.0})
            flow.take(start + qint64(value) * second, value); // the later ones are older and count nowhere
        flow.take(start + minute, 5);
        flow.take(start + 2 * minute, 1);
        QCOMPARE(flow.read(DataField::TodayMaximumTime, start + hour), moment(start + 5 * second));
        QCOMPARE(flow.read(DataField::TodayMinimumTime, start + hour), moment(start + 1 * second));
    }

    void aValueHoldsIntoNewPeriods()
    {
        Subject flow(Kind::Analog);
        flow.take(utc("2024-05-01T22:30:00"), 4);
        const qint64 midnight = utc("2024-05-02T00:00:00");
        const qint64 now = midnight + 30 * minute;
        QCOMPARE(flow.read(DataField::TodayMaximum, now), QVariant(4.0));
        QCOMPARE(flow.read(DataField::TodayMaximumTime, now), moment(midnight));
        QCOMPARE(flow.read(DataField::TodayAccumulated, now), QVariant(2.0));
        QCOMPARE(flow.read(DataField::MonthAccumulated, now), QVariant(8.0));
        QCOMPARE(flow.read(DataField::MonthMaximumTime, now), moment(utc("2024-05-01T22:30:00")));
        QCOMPARE(flow.read(DataField::PastMean, now), QVariant(4.0));
        QCOMPARE(flow.read(DataField::PastAccumulated, now), QVariant(4.0));
        QCOMPARE(flow.read(DataField::PastMoment, now), QVariant(4.0));
    }

    void atTheVeryStartOfAPeriodTheValueCounts()
    {
        Subject flow(Kind::Analog);
        flow.take(utc("2024-05-01T22:30:00"), 4);
        const qint64 midnight = utc("2024-05-02T00:00:00");
        QCOMPARE(flow.read(DataField::TodayMaximum, midnight), QVariant(4.0));
        QCOMPARE(flow.read(DataField::TodayMaximumTime, midnight), moment(midnight));
        QCOMPARE(flow.read(DataField::TodayAccumulated, midnight), QVariant(0.0));
        QVERIFY(!flow.read(DataField::TodayMean, midnight).isValid());
        flow.take(midnight, 7); // takes the place of the one before, which then holds no moment of the day
        QCOMPARE(flow.read(DataField::TodayMinimum, midnight), QVariant(7.0));
        QCOMPARE(flow.read(DataField::PastMoment, midnight), QVariant(7.0));
    }

    void aStaleValueCountsNoLonger()
    {
        Subject flow(Kind::Analog, minute);
        const qint64 start = utc("2024-05-01T10:00:00");
        flow.take(start, 60);
        flow.take(start + 10 * minute, 120);
        QCOMPARE(flow.read(DataField::HourAccumulated, start + 30 * minute), QVariant(3.0));
        QCOMPARE(flow.read(DataField::HourMean, start + 30 * minute), QVariant(90.0));
        QVERIFY(!flow.read(DataField::HourMean, start + hour).isValid());
        QVERIFY(!flow.read(DataField::PastMoment, start + hour).isValid());
        QCOMPARE(flow.read(DataField::PastMaximum, start + hour), QVariant(120.0));
        QVERIFY(!flow.read(DataField::PastMaximum, start + 2 * hour).isValid());
    }

    void durationsAndChanges()
    {
        Subject pump(Kind::Digital);
        const qint64 start = utc("2024-05-01T10:00:00");
        pump.take(start, 1); // the first known state: no change
        pump.take(start + 10 * second, 0);
        pump.take(start + 30 * second, 2); // on, too
        pump.take(start + 31 * second, 1); // and stays on
        const qint64 now = start + 60 * second;
        QCOMPARE(pump.read(DataField::HourOnCount, now), QVariant(1));
        QCOMPARE(pump.read(DataField::HourOffCount, now), QVariant(1));
        QCOMPARE(pump.read(DataField::HourOnDuration, now), QVariant(40.0));
        QCOMPARE(pump.read(DataField::HourOffDuration, now), QVariant(20.0));
        QCOMPARE(pump.read(DataField::TotalOnDuration, start + day), QVariant(86400.0 - 20));
        QCOMPARE(pump.read(DataField::TodayOnCount, start + day), QVariant(0));
        QCOMPARE(pump.read(DataField::PastMoment, start + day), QVariant(1));
        QVERIFY(!pump.read(DataField::HourMaximum, now).isValid());
        QVERIFY(!pump.read(DataField::PastMaximum, start + day).isValid());
    }

    void aChangeDuringAGapIsCountedOnce()
    {
        Subject pump(Kind::Digital, minute);
        const qint64 start = utc("2024-05-01T10:00:00");
        pump.take(start, 0);
        pump.take(start + minute, 0, ValueMark::Invalid);
        pump.take(start + 2 * hour, 1);
        QCOMPARE(pump.read(DataField::HourOnCount, start + 2 * hour), QVariant(1));
        QCOMPARE(pump.read(DataField::TotalOnCount, start + 2 * hour), QVariant(1));
        QCOMPARE(pump.read(DataField::TotalOffDuration, start + 2 * hour), QVariant(60.0));
    }

    void whatDoesNotCount_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("quality");
        QTest::newRow("an invalid value") << 5.0 << int(ValueMark::Invalid);
        QTest::newRow("a value without communication") << 5.0 << int(ValueMark::CommunicationFailed);
        QTest::newRow("no number") << std::nan("") << 0;
        QTest::newRow("an infinite number") << HUGE_VAL << 0;
        QTest::newRow("a negative infinite number") << -HUGE_VAL << 0;
    }
    void whatDoesNotCount()
    {
        QFETCH(double, value);
        QFETCH(int, quality);

        Subject flow(Kind::Analog);
        const qint64 start = utc("2024-05-01T10:00:00");
        QVERIFY(flow.take(start, 2));
        QVERIFY(flow.take(start + 15 * minute, value, quality));
        QVERIFY(flow.take(start + 45 * minute, 2, ValueMark::Substituted | ValueMark::Test));
        const qint64 now = start + hour - 1;
        QCOMPARE(flow.read(DataField::HourMaximum, now), QVariant(2.0));
        QCOMPARE(flow.read(DataField::HourMean, now), QVariant(2.0));
        QCOMPARE(flow.read(DataField::PastAccumulated, now + 1), QVariant(1.0));
    }

    void aFailureStopsTheCountingUntilItEnds()
    {
        Subject flow(Kind::Analog, 40 * minute);
        const qint64 start = utc("2024-05-01T10:00:00");
        flow.take(start, 60);
        flow.setFailed(true, start + 10 * minute);
        QCOMPARE(flow.read(DataField::HourAccumulated, start + 20 * minute), QVariant(10.0));
        flow.setFailed(false, start + 30 * minute);
        QCOMPARE(flow.read(DataField::HourAccumulated, start + 35 * minute), QVariant(15.0));
        // Stale forty minutes after the sample, not after the return.
        QCOMPARE(flow.read(DataField::HourAccumulated, start + 50 * minute), QVariant(20.0));
    }

    void aSampleUnderWayDuringAFailureCountsFromItsOwnTime()
    {
        Subject flow(Kind::Analog);
        const qint64 start = utc("2024-05-01T10:00:00");
        flow.take(start, 60);
        flow.setFailed(true, start + 10 * minute);
        QVERIFY(flow.take(start + 5 * minute, 120));
        QCOMPARE(flow.read(DataField::HourAccumulated, start + 10 * minute), QVariant(15.0));
    }

    void anInterruptionEndsWithTheNextSample()
    {
        Subject flow(Kind::Analog);
        const qint64 start = utc("2024-05-01T10:00:00");
        flow.take(start, 60);
        flow.interrupt(start + 10 * minute);
        flow.setFailed(true, start + 15 * minute);
        flow.setFailed(false, start + 16 * minute);
        QCOMPARE(flow.read(DataField::HourAccumulated, start + 20 * minute), QVariant(10.0));
        flow.take(start + 30 * minute, 6);
        QCOMPARE(flow.read(DataField::HourAccumulated, start + 40 * minute), QVariant(11.0));
        QCOMPARE(flow.read(DataField::HourMinimumTime, start + 40 * minute), moment(start + 30 * minute));
    }

    void decadesWithoutASampleAreCountedAtOnce()
    {
        Subject flow(Kind::Analog, 0, "Europe/Berlin");
        flow.take(0, 2);
        const qint64 now = utc("2024-06-30T22:30:00");
        flow.take(now, 3);
        QCOMPARE(flow.read(DataField::TotalAccumulated, now).toDouble(), 2.0 * double(now) / double(hour));
        QCOMPARE(flow.read(DataField::MonthAccumulated, now), QVariant(1.0));
        QCOMPARE(flow.read(DataField::MonthMinimumTime, now), moment(utc("2024-06-30T22:00:00")));
        // From local new year on: 182 days, and half an hour more, less the hour of summer time.
        QCOMPARE(flow.read(DataField::YearAccumulated, now), QVariant(2.0 * (182 * 24 - 1 + 0.5)));
        QCOMPARE(flow.read(DataField::PastAccumulated, now), QVariant(2.0));
    }

    void nothingIsKnownBeforeTheFirstSample()
    {
        const Subject flow(Kind::Analog);
        for (int code = 0; code < 100; ++code)
            QVERIFY(!flow.read(DataField(code), 0).isValid());
    }

    void otherBytesAreRefused()
    {
        const StatisticsCalendar calendar{QTimeZone("UTC")};
        PointStatistics flow(Kind::Analog);
        flow.take(utc("2024-05-01T10:00:00"), 5, 0, calendar);
        const QByteArray bytes = flow.toBytes();
        const auto read = [&](const QByteArray& other) { return PointStatistics(Kind::Analog).fromBytes(other); };
        QVERIFY(read(bytes));
        QVERIFY(!PointStatistics(Kind::Digital).fromBytes(bytes));
        QVERIFY(!read({}));
        QVERIFY(!read(bytes.chopped(1)));
        QVERIFY(!read(bytes + '\0'));
        QVERIFY(!read('\x7f' + bytes.mid(1)));
        QVERIFY(bytes.size() < 500);
        QVERIFY(sizeof(PointStatistics) <= 700);
    }

    void agreesWithTheSlowWay_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<qint64>("step");
        QTest::addColumn<qint64>("staleAfterMs");
        const auto row = [](const char* name, const char* zone, const char* from, qint64 step, qint64 staleAfter) {
            QTest::newRow(name) << QByteArray(zone) << QByteArray(from) << step << staleAfter;
        };
        row("a midnight", "UTC", "2024-05-01T22:00:00", 5 * minute, 0);
        row("a midnight, values soon stale", "UTC", "2024-05-01T22:00:00", 5 * minute, 4 * minute);
        row("the end of a month", "Europe/Berlin", "2024-04-30T12:00:00", 30 * minute, 0);
        row("February 29", "Europe/Berlin", "2024-02-28T12:00:00", hour, 50 * minute);
        row("the end of a year", "Europe/Berlin", "2024-12-31T12:00:00", 20 * minute, 0);
        row("the end of a year and of a week", "Europe/Berlin", "2023-12-31T12:00:00", 20 * minute, hour);
        row("the clock put forward in Berlin", "Europe/Berlin", "2024-03-30T20:00:00", 11 * minute, 0);
        row("the clock put back in Berlin", "Europe/Berlin", "2024-10-26T20:00:00", 11 * minute, 9 * minute);
        row("half an hour put forward", "Australia/Lord_Howe", "2024-10-05T10:00:00", 10 * minute, 8 * minute);
        row("half an hour put back", "Australia/Lord_Howe", "2024-04-06T10:00:00", 10 * minute, 0);
        row("a midnight that is skipped", "America/Sao_Paulo", "2018-11-03T20:00:00", 10 * minute, 0);
        row("a midnight that is put off", "America/Sao_Paulo", "2018-02-17T20:00:00", 10 * minute, 5 * minute);
        row("the clock put back across midnight", "America/St_Johns", "2006-10-28T22:00:00", 6 * minute, 0);
        row("gaps of many hours", "Europe/Berlin", "2024-10-24T20:00:00", 7 * hour, 0);
        row("gaps of many hours, values soon stale", "Europe/Berlin", "2024-03-28T20:00:00", 7 * hour, 90 * minute);
        row("samples every second", "Europe/Berlin", "2024-05-31T21:58:00", second, 0);
    }
    void agreesWithTheSlowWay()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QByteArray, from);
        QFETCH(qint64, step);
        QFETCH(qint64, staleAfterMs);

        using Event = SlowStatistics::Event;
        constexpr int events = 120;
        const qint64 begin = utc(from);
        const SlowCalendar calendar(QTimeZone(zone), begin - hour - begin % hour,
                                    begin + 2 * events * step + events * hour);
        for (quint32 seed = 0; seed < 6; ++seed) {
            const Kind kind = seed % 2 == 0 ? Kind::Analog : Kind::Digital;
            QRandomGenerator random(seed);
            Subject subject(kind, staleAfterMs, zone);
            SlowStatistics slow(staleAfterMs);
            qint64 now = begin;
            Event::Kind before = Event::Unknown;
            for (int i = 0; i < events; ++i) {
                now += 1 + random.bounded(int(2 * step - 1));
                // Now and then exactly at the end of an hour.
                if (random.bounded(6) == 0 && calendar.start(SlowCalendar::Hour, now + hour) > now)
                    now = calendar.start(SlowCalendar::Hour, now + hour);
                const int choice = random.bounded(20);
                Event event{now, Event::Value, double(random.bounded(kind == Kind::Analog ? 9 : 3)) - 1};
                if (kind == Kind::Digital)
                    event.value += 1;
                if (choice == 0)
                    event.kind = Event::Unknown;
                else if (choice < 3)
                    event.kind = before == Event::Fails ? Event::Returns : Event::Fails;
                before = event.kind;
                slow.add(event);
                if (event.kind == Event::Value || event.kind == Event::Unknown)
                    QVERIFY(subject.take(now, event.value, event.kind == Event::Value ? 0 : int(ValueMark::Invalid)));
                else
                    subject.setFailed(event.kind == Event::Fails, now);
                QVERIFY(!subject.take(now - 1 - day, 1e6)); // late ones count nowhere
                if (random.bounded(10) == 0)
                    QVERIFY(subject.goesThroughBytes());
                const qint64 later = now + (i % 3 == 0 ? random.bounded(int(2 * step)) : 0);
                const QString text = difference(subject, kind, slow, calendar, later);
                if (!text.isEmpty())
                    QFAIL(qPrintable(QStringLiteral("seed %1, event %2: %3").arg(seed).arg(i).arg(text)));
            }
        }
    }
};

QTEST_GUILESS_MAIN(tst_PointStatistics)
#include "tst_pointstatistics.moc"
