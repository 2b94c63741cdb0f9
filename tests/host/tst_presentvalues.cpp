// The present values of the runtime database: what samples and time do to them.

#include "host/runtime/runtimedatabase.h"

#include "platform/data/valuemarks.h"
#include "tests/support/allocationcounter.h"

#include <QtTest>

#include <cmath>
#include <random>

using DataCode::DataField;
using Korvane::ScadaObjectType;

namespace {

constexpr ObjectKey flowKey{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey pumpKey{ScadaObjectType::DigitalPoint, 100001};
constexpr ObjectKey unitKey{ScadaObjectType::RtuObject, 1};
constexpr ObjectKey lineKey{ScadaObjectType::ChannelObject, 1};
constexpr qint64 start = Q_INT64_C(1714557600000); // 2024-05-01T10:00:00Z
constexpr qint64 minute = 60000;

RuntimeDatabase::Object flow()
{
    RuntimeDatabase::Object object{ScadaObjectType::AnalogPoint, flowKey.id, QStringLiteral("FLOW")};
    object.lowLow = 10;
    object.low = 20;
    object.high = 80;
    object.highHigh = 90;
    object.hysteresis = 2;
    object.unit = QStringLiteral("m³/h");
    object.decimals = 1;
    object.staleAfter = std::chrono::minutes(1);
    return object;
}

RuntimeDatabase::Object pump()
{
    RuntimeDatabase::Object object{ScadaObjectType::DigitalPoint, pumpKey.id, QStringLiteral("PUMP")};
    object.states = QStringList{QStringLiteral("off"), QStringLiteral("on"), {}, QStringLiteral("tripped")};
    object.abnormalState = 3;
    return object;
}

/// A database with one object of each kind, in UTC, its clock at start unless moved.
struct Plant
{
    Plant()
    {
        database.setTimeZone(QTimeZone::utc());
        database.setClock([this] { return now; });
        const bool isAdded = database.add(flow()) && database.add(pump()) &&
                             database.add({ScadaObjectType::RtuObject, 1, QStringLiteral("RTU1")}) &&
                             database.add({ScadaObjectType::ChannelObject, 1, QStringLiteral("LINE1")});
        Q_ASSERT(isAdded);
        Q_UNUSED(isAdded)
    }
    bool take(ObjectKey key, qint64 ms, double value, qint32 quality = 0)
    {
        return database.takeSample({key, ms, value, quality});
    }
    QVariant member(ObjectKey key, const char* name) const
    {
        const QuorixData record = database.presentRecord(key);
        const QuorixValue* value = record.GetValue(name);
        return value ? value->toVariant() : QVariant();
    }
    int mark(ObjectKey key, const char* name) const { return member(key, name).toInt(); }

    qint64 now = start;
    RuntimeDatabase database;
};

/// Keeps what it hears of watched objects, as "7: 1000 ms, 85 limit 2 quality 0".
class Listener final : public MarksListener
{
public:
    void marksChanged(const ObjectMarks& marks) override
    {
        heard.append(QStringLiteral("%1: %2 ms, %3 limit %4 quality %5")
                         .arg(marks.handle)
                         .arg(marks.timeMs - start)
                         .arg(marks.value)
                         .arg(marks.limitMarks)
                         .arg(marks.quality));
    }
    QString take()
    {
        const QString all = heard.join(QStringLiteral("; "));
        heard.clear();
        return all;
    }

    QStringList heard;
};

/// Hears without keeping anything.
class CountingListener final : public MarksListener
{
public:
    void marksChanged(const ObjectMarks&) override { ++count; }

    int count = 0;
};

} // namespace

class tst_PresentValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsHoldValueMarksAndTime()
    {
        Plant plant;
        QVERIFY(!plant.member(flowKey, "value").isValid());
        QVERIFY(!plant.member(flowKey, "time").isValid());
        QCOMPARE(plant.member(flowKey, "tag"), QVariant(0));
        QCOMPARE(plant.member(flowKey, "limit"), QVariant(0));
        QCOMPARE(plant.member(flowKey, "quality"), QVariant(int(ValueMark::Invalid)));

        QVERIFY(plant.take(flowKey, start, 85.5, ValueMark::Substituted));
        QCOMPARE(plant.member(flowKey, "value"), QVariant(85.5));
        QCOMPARE(plant.member(flowKey, "limit"), QVariant(int(ValueMark::AboveHigh)));
        QCOMPARE(plant.member(flowKey, "quality"), QVariant(int(ValueMark::Substituted)));
        const QVariant time = QDateTime::fromMSecsSinceEpoch(start, Qt::UTC);
        QCOMPARE(plant.member(flowKey, "time"), time);
        QVERIFY(!plant.member(flowKey, "commState").isValid());

        QVERIFY(plant.take(pumpKey, start, 1));
        QCOMPARE(plant.member(pumpKey, "value"), QVariant(1));

        QVERIFY(plant.take(unitKey, start, 2));
        for (const char* name : {"value", "commState", "scanState"})
            QCOMPARE(plant.member(unitKey, name), QVariant(2));
        QVERIFY(plant.take(lineKey, start, 3));
        for (const char* name : {"value", "commState", "driverState"})
            QCOMPARE(plant.member(lineKey, name), QVariant(3));
        QVERIFY(!plant.member(lineKey, "scanState").isValid());
        QVERIFY(!plant.member({ScadaObjectType::RtuObject, 2}, "quality").isValid());
    }

    void recordsOfPointsAllocateNothing()
    {
        Plant plant;
        plant.take(flowKey, start, 5);
        plant.take(pumpKey, start, 1);
        const AllocationCounter counter;
        for (const ObjectKey key : {flowKey, pumpKey}) {
            const QuorixData record = plant.database.presentRecord(key);
            QVERIFY(record.GetValue("value"));
        }
        QVERIFY(plant.take(flowKey, start + 1, 6));
        QCOMPARE(counter.count(), std::size_t(0));
    }

    void samplesThatAreIgnored()
    {
        Plant plant;
        QVERIFY(plant.take(flowKey, start, 5));
        QVERIFY(!plant.take(flowKey, start - 1, 6));
        QVERIFY(plant.take(flowKey, start, 7)); // the same time
        QVERIFY(!plant.take({ScadaObjectType::AnalogPoint, 200002}, start, 1));
        QVERIFY(!plant.take({ScadaObjectType::NoObject, 200001}, start, 1));
        QVERIFY(!plant.take({ScadaObjectType::ApplicationProperty, 1}, start, 1));
        QVERIFY(!plant.take(flowKey, std::numeric_limits<qint64>::max(), 1));
        QVERIFY(!plant.take(pumpKey, std::numeric_limits<qint64>::min(), 1));
        QCOMPARE(plant.member(flowKey, "value"), QVariant(7.0));
        QVERIFY(!plant.member(pumpKey, "time").isValid());
        QVERIFY(plant.take({ScadaObjectType::Point, flowKey.id}, start + 1, 8)); // any point goes by its id
        QCOMPARE(plant.member(flowKey, "value"), QVariant(8.0));
    }

    void limits_data()
    {
        QTest::addColumn<double>("before");
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("marks");
        const int high = ValueMark::AboveHigh;
        const int highHigh = high | ValueMark::AboveHighHigh;
        const int low = ValueMark::BelowLow;
        const int lowLow = low | ValueMark::BelowLowLow;
        QTest::newRow("between the limits") << 50.0 << 50.0 << 0;
        QTest::newRow("at the upper limit") << 50.0 << 80.0 << 0;
        QTest::newRow("above the upper limit") << 50.0 << 80.1 << high;
        QTest::newRow("back at the upper limit") << 81.0 << 80.0 << high;
        QTest::newRow("back by less than the hysteresis") << 81.0 << 78.1 << high;
        QTest::newRow("back by the hysteresis") << 81.0 << 78.0 << 0;
        QTest::newRow("above both upper limits") << 50.0 << 91.0 << highHigh;
        QTest::newRow("back from the second by less than the hysteresis") << 91.0 << 88.5 << highHigh;
        QTest::newRow("back from the second by the hysteresis") << 91.0 << 88.0 << high;
        QTest::newRow("back from both at once") << 91.0 << 50.0 << 0;
        QTest::newRow("at the lower limit") << 50.0 << 20.0 << 0;
        QTest::newRow("below the lower limit") << 50.0 << 19.9 << low;
        QTest::newRow("back above the lower limit by less") << 19.0 << 21.9 << low;
        QTest::newRow("back above the lower limit by the hysteresis") << 19.0 << 22.0 << 0;
        QTest::newRow("below both lower limits") << 50.0 << 9.0 << lowLow;
        QTest::newRow("back above the second lower limit") << 9.0 << 12.0 << low;
        QTest::newRow("from far below to far above") << 0.0 << 100.0 << highHigh;
    }
    void limits()
    {
        QFETCH(double, before);
        QFETCH(double, value);
        QFETCH(int, marks);

        Plant plant;
        QVERIFY(plant.take(flowKey, start, before));
        QVERIFY(plant.take(flowKey, start + 1, value));
        QCOMPARE(plant.mark(flowKey, "limit"), marks);
    }

    void limitsThatAPointDoesNotHave()
    {
        RuntimeDatabase database;
        RuntimeDatabase::Object object{ScadaObjectType::AnalogPoint, 200002, QStringLiteral("LEVEL")};
        object.highHigh = 5;
        object.hysteresis = -1; // counts as none
        QVERIFY(database.add(object));
        const ObjectKey key{ScadaObjectType::AnalogPoint, 200002};
        const auto marks = [&](qint64 ms, double value) {
            [[maybe_unused]] const bool isTaken = database.takeSample({key, ms, value, 0});
            return database.presentRecord(key).GetValue("limit")->toInt32();
        };
        QCOMPARE(marks(1, 1e300), int(ValueMark::AboveHighHigh));
        QCOMPARE(marks(2, 5.0), 0);
        QCOMPARE(marks(3, -1e300), 0);
    }

    void anInvalidSampleChangesNoLimitMark()
    {
        Plant plant;
        plant.take(flowKey, start, 85);
        plant.take(flowKey, start + 1, 50, ValueMark::Invalid);
        QCOMPARE(plant.mark(flowKey, "limit"), int(ValueMark::AboveHigh));
        QCOMPARE(plant.member(flowKey, "value"), QVariant(50.0));
        plant.take(flowKey, start + 2, 50);
        QCOMPARE(plant.mark(flowKey, "limit"), 0);
    }

    void changesOfWatchedMarksAreHeard()
    {
        Plant plant;
        Listener listener;
        plant.take(flowKey, start - 10, 50);
        plant.database.setMarksListener(&listener);
        plant.take(flowKey, start - 9, 85); // not watched yet
        plant.database.watch(flowKey, 7);
        plant.database.watch({ScadaObjectType::AnalogPoint, 200009}, 8); // unknown
        plant.database.watch({ScadaObjectType::NoObject, 1}, 9);
        QCOMPARE(listener.take(), QString());
        plant.take(flowKey, start, 85); // the first sample, whatever it changes
        QCOMPARE(listener.take(), QStringLiteral("7: 0 ms, 85 limit 2 quality 0"));
        plant.take(flowKey, start + 1, 86);
        plant.take(pumpKey, start + 1, 3);
        QCOMPARE(listener.take(), QString());
        plant.take(flowKey, start + 2, 95);
        QCOMPARE(listener.take(), QStringLiteral("7: 2 ms, 95 limit 10 quality 0"));
        plant.take(flowKey, start + 3, 95, ValueMark::Substituted);
        QCOMPARE(listener.take(), QStringLiteral("7: 3 ms, 95 limit 10 quality 2"));
        plant.take(flowKey, start + 4, std::nan(""));
        QCOMPARE(listener.take(), QStringLiteral("7: 4 ms, 95 limit 10 quality 1"));
        plant.take(flowKey, start + 5, 5);
        QCOMPARE(listener.take(), QStringLiteral("7: 5 ms, 5 limit 5 quality 0"));
        QVERIFY(!plant.take(flowKey, start + 4, 50)); // older: ignored
        QCOMPARE(listener.take(), QString());
        plant.database.setMarksListener(nullptr);
        plant.take(flowKey, start + 6, 50);
        QCOMPARE(listener.take(), QString());
    }

    void whatTimeDoesToWatchedMarksIsHeard()
    {
        Plant plant;
        Listener listener;
        plant.database.setMarksListener(&listener);
        plant.database.watch(flowKey, 0);
        plant.database.watch(unitKey, 1);
        plant.take(flowKey, start, 50);
        plant.take(unitKey, start, 1);
        QCOMPARE(listener.take(), QStringLiteral("0: 0 ms, 50 limit 0 quality 0; 1: 0 ms, 1 limit 0 quality 0"));
        QCOMPARE(plant.database.takeStale(start + 90000).size(), std::size_t(1));
        QCOMPARE(listener.take(), QStringLiteral("0: 60000 ms, 50 limit 0 quality 4")); // when it was over
        QVERIFY(plant.database.setCommunicationFailed(unitKey, true, start + 95000));
        QVERIFY(!plant.database.setCommunicationFailed(unitKey, true, start + 96000));
        QCOMPARE(listener.take(), QStringLiteral("1: 95000 ms, 1 limit 0 quality 8"));
        QVERIFY(plant.database.setCommunicationFailed(unitKey, false, start + 97000));
        QCOMPARE(listener.take(), QStringLiteral("1: 97000 ms, 1 limit 0 quality 0"));
    }

    void aWatchedPointThatNeverHasASampleGoesStale()
    {
        Plant plant;
        Listener listener;
        plant.database.setMarksListener(&listener);
        plant.database.watch(flowKey, 0);
        plant.database.watch(unitKey, 1); // has no time limit
        QVERIFY(plant.database.takeStale(start + minute - 1).empty());
        QCOMPARE(listener.take(), QString());
        QCOMPARE(plant.database.takeStale(start + minute).size(), std::size_t(1));
        QCOMPARE(listener.take(), QStringLiteral("0: 60000 ms, nan limit 0 quality 5"));
        QVERIFY(plant.database.takeStale(start + 10 * minute).empty());
        plant.take(flowKey, start + 11 * minute, 50);
        QCOMPARE(listener.take(), QStringLiteral("0: 660000 ms, 50 limit 0 quality 0"));
    }

    void whatHasFailedBeforeIsHeardAtOnce()
    {
        Plant plant;
        QVERIFY(plant.database.setCommunicationFailed(unitKey, true, start));
        Listener listener;
        plant.database.setMarksListener(&listener);
        plant.database.watch(unitKey, 1);
        QCOMPARE(listener.take(), QStringLiteral("1: 0 ms, nan limit 0 quality 9"));
    }

    void watchingAllocatesNothing()
    {
        Plant plant;
        CountingListener listener;
        plant.database.setMarksListener(&listener);
        plant.database.watch(flowKey, 0);
        plant.take(flowKey, start, 50);
        const AllocationCounter counter;
        QVERIFY(plant.take(flowKey, start + 1, 95));
        QCOMPARE(counter.count(), std::size_t(0));
        QCOMPARE(listener.count, 2);
    }

    void theRateOfChangeIsMarked_data()
    {
        QTest::addColumn<double>("rateLimit");
        QTest::addColumn<qint64>("afterMs");
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("isMarked");
        QTest::newRow("at the limit") << 10.0 << Q_INT64_C(500) << 45.0 << false;
        QTest::newRow("above the limit") << 10.0 << Q_INT64_C(500) << 45.5 << true;
        QTest::newRow("downwards at the limit") << 10.0 << Q_INT64_C(500) << 35.0 << false;
        QTest::newRow("downwards above the limit") << 10.0 << Q_INT64_C(500) << 34.5 << true;
        QTest::newRow("of the same time") << 10.0 << Q_INT64_C(0) << 70.0 << false;
        QTest::newRow("without a limit") << std::nan("") << Q_INT64_C(1) << 79.0 << false;
        QTest::newRow("no value") << 10.0 << Q_INT64_C(1) << std::nan("") << false;
    }
    void theRateOfChangeIsMarked()
    {
        QFETCH(double, rateLimit);
        QFETCH(qint64, afterMs);
        QFETCH(double, value);
        QFETCH(bool, isMarked);
        RuntimeDatabase database;
        RuntimeDatabase::Object object = flow();
        object.alarm.rateLimit = rateLimit;
        QVERIFY(database.add(object));
        QVERIFY(database.takeSample({flowKey, start, 40, 0}));
        QCOMPARE(database.presentRecord(flowKey).GetValue("limit")->toInt32(), 0); // nothing before
        QVERIFY(database.takeSample({flowKey, start + afterMs, value, 0}));
        QCOMPARE(database.presentRecord(flowKey).GetValue("limit")->toInt32(), isMarked ? int(ValueMark::Abnormal) : 0);
    }

    void aRateLimitMarksAnalogPointsOnly()
    {
        RuntimeDatabase database;
        RuntimeDatabase::Object object = pump();
        object.alarm.rateLimit = 1;
        QVERIFY(database.add(object));
        QVERIFY(database.takeSample({pumpKey, start, 0, 0}));
        QVERIFY(database.takeSample({pumpKey, start + 1, 2, 0}));
        QCOMPARE(database.presentRecord(pumpKey).GetValue("limit")->toInt32(), 0);
    }

    void theAbnormalStateIsMarked()
    {
        Plant plant;
        plant.take(pumpKey, start, 3);
        QCOMPARE(plant.mark(pumpKey, "limit"), int(ValueMark::Abnormal));
        plant.take(pumpKey, start + 1, 1);
        QCOMPARE(plant.mark(pumpKey, "limit"), 0);
    }

    void whatIsNoValueIsMarkedInvalid_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("isAnalog");
        QTest::newRow("no number") << std::nan("") << true;
        QTest::newRow("an infinite number") << HUGE_VAL << true;
        QTest::newRow("no number of a state") << std::nan("") << false;
        QTest::newRow("a state beyond 32 bits") << 2147483648.0 << false;
        QTest::newRow("a negative state beyond 32 bits") << -2147483649.0 << false;
    }
    void whatIsNoValueIsMarkedInvalid()
    {
        QFETCH(double, value);
        QFETCH(bool, isAnalog);

        Plant plant;
        const ObjectKey key = isAnalog ? flowKey : pumpKey;
        QVERIFY(plant.take(key, start, value, ValueMark::Test));
        QVERIFY(!plant.member(key, "value").isValid());
        QVERIFY(plant.take(key, start + 1, 1));
        QVERIFY(plant.take(key, start + 2, value, ValueMark::Test));
        QCOMPARE(plant.member(key, "value").toDouble(), 1.0);
        QCOMPARE(plant.mark(key, "quality"), int(ValueMark::Test | ValueMark::Invalid));
        QCOMPARE(plant.member(key, "time").toDateTime().toMSecsSinceEpoch(), start + 2);
        QVERIFY(plant.take(key, start + 3, 2));
        QCOMPARE(plant.mark(key, "quality"), 0);
    }

    void theBoundsOfStatesAreStates()
    {
        Plant plant;
        plant.take(pumpKey, start, -2147483648.0);
        QCOMPARE(plant.member(pumpKey, "value"), QVariant(std::numeric_limits<int>::min()));
        plant.take(pumpKey, start, 2147483647.0);
        QCOMPARE(plant.member(pumpKey, "value"), QVariant(std::numeric_limits<int>::max()));
        plant.take(pumpKey, start, 1.9);
        QCOMPARE(plant.member(pumpKey, "value"), QVariant(1));
    }

    void aValueGoesStaleOnce()
    {
        Plant plant;
        const std::vector<ObjectKey> none;
        QCOMPARE(plant.database.takeStale(start), none);
        plant.take(flowKey, start, 5);
        plant.take(pumpKey, start, 1); // holds for ever
        plant.take(flowKey, start + 10, 6);
        QCOMPARE(plant.database.takeStale(start + minute + 9), none);
        QCOMPARE(plant.mark(flowKey, "quality"), 0);
        QCOMPARE(plant.database.takeStale(start + minute + 10), std::vector<ObjectKey>{flowKey});
        QCOMPARE(plant.mark(flowKey, "quality"), int(ValueMark::Stale));
        QCOMPARE(plant.member(flowKey, "value"), QVariant(6.0));
        QCOMPARE(plant.database.takeStale(start + 5 * minute), none);
        plant.take(flowKey, start + 5 * minute, 7);
        QCOMPARE(plant.mark(flowKey, "quality"), 0);
        QCOMPARE(plant.database.takeStale(start + 5 * minute), none);
        QCOMPARE(plant.database.takeStale(start + 9 * minute), std::vector<ObjectKey>{flowKey});
        plant.take(flowKey, start + 10 * minute, 7, ValueMark::Stale); // the source says so itself
        QCOMPARE(plant.database.takeStale(start + 19 * minute), none);
        QCOMPARE(plant.database.takeStale(start + minute * 1000000), none);
    }

    void manyValuesGoStaleEachAtItsTime()
    {
        constexpr int count = 500;
        RuntimeDatabase database;
        std::vector<qint64> staleAt(count);
        std::mt19937 random(3);
        for (int i = 0; i < count; ++i) {
            RuntimeDatabase::Object object{ScadaObjectType::AnalogPoint, 200001 + i, QStringLiteral("P%1").arg(i)};
            object.staleAfter = std::chrono::milliseconds(100 + 37 * (i % 11));
            QVERIFY(database.add(object));
        }
        for (qint64 now = start; now < start + 5000; now += 10) {
            for (int n = 0; n < 20; ++n) {
                const int i = int(random() % count);
                QVERIFY(database.takeSample({{ScadaObjectType::AnalogPoint, 200001 + i}, now, 1, 0}));
                staleAt[std::size_t(i)] = now + 100 + 37 * (i % 11);
            }
            std::vector<qint32> expected;
            for (int i = 0; i < count; ++i) {
                qint64& due = staleAt[std::size_t(i)];
                if (due == 0 || due > now)
                    continue;
                expected.push_back(200001 + i);
                due = 0;
            }
            std::vector<qint32> found;
            for (const ObjectKey key : database.takeStale(now))
                found.push_back(key.id);
            std::sort(found.begin(), found.end());
            QCOMPARE(found, expected);
        }
    }

    void aFailureOfCommunicationIsMarked()
    {
        Plant plant;
        QVERIFY(plant.database.setCommunicationFailed(flowKey, true, start));
        QVERIFY(!plant.database.setCommunicationFailed(flowKey, true, start));
        QCOMPARE(plant.mark(flowKey, "quality"), int(ValueMark::Invalid | ValueMark::CommunicationFailed));
        QVERIFY(plant.database.setCommunicationFailed(flowKey, false, start));
        QCOMPARE(plant.mark(flowKey, "quality"), int(ValueMark::Invalid));
        QVERIFY(!plant.database.setCommunicationFailed({ScadaObjectType::RtuObject, 9}, true, start));

        plant.take(flowKey, start, 60);
        QVERIFY(plant.database.setCommunicationFailed(flowKey, true, start + minute / 4));
        QCOMPARE(plant.mark(flowKey, "quality"), int(ValueMark::CommunicationFailed));
        plant.now = start + minute / 2;
        QCOMPARE(plant.database.fieldValue(flowKey, DataField::HourAccumulated), QVariant(0.25));
        QVERIFY(plant.database.setCommunicationFailed(flowKey, false, start + minute / 2));
        plant.now = start + 3 * minute / 4;
        QCOMPARE(plant.database.fieldValue(flowKey, DataField::HourAccumulated), QVariant(0.5));
        QVERIFY(plant.database.setCommunicationFailed(flowKey, true, plant.now));
        plant.take(flowKey, start + 10 * minute, 50);
        QCOMPARE(plant.mark(flowKey, "quality"), 0);
    }

    void statisticsAreReadAtTheClocksTime()
    {
        Plant plant;
        QVERIFY(!plant.database.fieldValue(flowKey, DataField::TodayMaximum).isValid());
        plant.take(flowKey, start, 60);
        plant.take(flowKey, start + minute / 2, 30);
        plant.take(pumpKey, start, 1);
        plant.take(unitKey, start, 1);
        plant.now = start + 10 * minute;
        QCOMPARE(plant.database.now(), plant.now);
        QCOMPARE(plant.database.fieldValue(flowKey, DataField::HourMean), QVariant(40.0)); // a minute and a half
        QCOMPARE(plant.database.fieldValue(flowKey, DataField::TodayMaximum), QVariant(60.0));
        QCOMPARE(plant.database.fieldValue(pumpKey, DataField::TodayOnDuration), QVariant(600.0));
        QVERIFY(!plant.database.fieldValue(flowKey, DataField::TodayOnDuration).isValid());
        QVERIFY(!plant.database.fieldValue(unitKey, DataField::TodayOnDuration).isValid());
        QVERIFY(!plant.database.historyValue(flowKey, DataField::PastMean).isValid());
        plant.now = start + 70 * minute;
        QCOMPARE(plant.database.historyValue(flowKey, DataField::PastMean), QVariant(40.0));
        QCOMPARE(plant.database.historyValue(pumpKey, DataField::PastMoment), QVariant(1));
        QVERIFY(!plant.database.historyValue(flowKey, DataField::TodayMaximum).isValid());
        QVERIFY(!plant.database.historyValue(pumpKey, DataField::PastMean).isValid());
        QVERIFY(!plant.database.historyValue({ScadaObjectType::RtuObject, 9}, DataField::PastMean).isValid());
        QVERIFY(!plant.database.fieldValue(flowKey, DataField::PastMean).isValid());
    }

    void statisticsFollowTheTimeZone()
    {
        Plant plant;
        plant.database.setTimeZone(QTimeZone(2 * 3600));
        plant.take(pumpKey, start, 1);
        plant.now = start + 12 * 60 * minute; // 24:00 two hours east
        QCOMPARE(plant.database.fieldValue(pumpKey, DataField::TodayOnDuration), QVariant(0.0));
        plant.now -= 1000;
        QCOMPARE(plant.database.fieldValue(pumpKey, DataField::TodayOnDuration), QVariant(12 * 3600.0 - 1));
    }

    void valuesAsTexts_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, double value, int decimals, const char* unit, const char* expected) {
            QTest::newRow(name) << value << decimals << QString::fromLatin1(unit) << QString::fromLatin1(expected);
        };
        row("decimals and unit", 12.345, 2, "bar", "12.35 bar");
        row("no decimals", 12.6, 0, "bar", "13 bar");
        row("no unit", 12.5, 1, "", "12.5");
        row("as many decimals as needed", 0.1, -1, "bar", "0.1 bar");
        row("as many as needed: none", 1000000, -1, "", "1000000");
        row("too long to be written out", 1e300, -1, "", "1e+300");
        row("too small to be written out", 1e-9, -1, "", "1e-09");
        row("nothing", 0, -1, "bar", "0 bar");
    }
    void valuesAsTexts()
    {
        QFETCH(double, value);
        QFETCH(int, decimals);
        QFETCH(QString, unit);
        QFETCH(QString, expected);

        RuntimeDatabase database;
        RuntimeDatabase::Object object{ScadaObjectType::AnalogPoint, flowKey.id, QStringLiteral("FLOW")};
        object.decimals = decimals;
        object.unit = unit;
        QVERIFY(database.add(object));
        QVERIFY(!database.fieldValue(flowKey, DataField::ValueWithUnit).isValid());
        QVERIFY(database.takeSample({flowKey, start, value, 0}));
        QCOMPARE(database.fieldValue(flowKey, DataField::ValueWithUnit), QVariant(expected));
        QVERIFY(!database.fieldValue(flowKey, DataField::StatusName).isValid());
    }

    void statesHaveNamesOrNumbers()
    {
        Plant plant;
        const auto name = [&](double value) {
            plant.take(pumpKey, start, value);
            return plant.database.fieldValue(pumpKey, DataField::StatusName).toString();
        };
        QVERIFY(!plant.database.fieldValue(pumpKey, DataField::StatusName).isValid());
        QCOMPARE(name(1), QStringLiteral("on"));
        QCOMPARE(name(2), QStringLiteral("2"));
        QCOMPARE(name(3), QStringLiteral("tripped"));
        QCOMPARE(name(4), QStringLiteral("4"));
        QCOMPARE(name(-1), QStringLiteral("-1"));
        QVERIFY(!plant.database.fieldValue(pumpKey, DataField::ValueWithUnit).isValid());
    }

    void objectsAreListedInOrder()
    {
        Plant plant;
        QCOMPARE(plant.database.objects(ScadaObjectType::Point), (std::vector<ObjectKey>{flowKey, pumpKey}));
        QCOMPARE(plant.database.objects(ScadaObjectType::DigitalPoint), std::vector<ObjectKey>{pumpKey});
        QCOMPARE(plant.database.objects(ScadaObjectType::RtuObject), std::vector<ObjectKey>{unitKey});
        QVERIFY(plant.database.objects(ScadaObjectType::NoObject).empty());
        QVERIFY(plant.database.object(flowKey));
        QCOMPARE(plant.database.object(flowKey)->unit, QStringLiteral("m³/h"));
        QVERIFY(!plant.database.object({ScadaObjectType::AnalogPoint, 200009}));
    }

    void statesGoThroughBytes()
    {
        Plant plant;
        QVERIFY(plant.database.state(flowKey).isEmpty());
        plant.take(flowKey, start, 85);
        plant.take(pumpKey, start, 3);
        plant.take(unitKey, start, 1);
        Plant other;
        for (const ObjectKey key : {flowKey, pumpKey, unitKey})
            QVERIFY(other.database.restore(key, plant.database.state(key)));
        for (const ObjectKey key : {flowKey, pumpKey, unitKey})
            other.database.interrupt(key, start + minute / 2);
        other.database.interrupt(lineKey, start); // has no value yet
        QCOMPARE(other.member(flowKey, "value"), QVariant(85.0));
        QCOMPARE(other.mark(flowKey, "limit"), int(ValueMark::AboveHigh));
        QCOMPARE(other.mark(flowKey, "quality"), int(ValueMark::Stale));
        QCOMPARE(other.mark(pumpKey, "limit"), int(ValueMark::Abnormal));
        QCOMPARE(other.member(unitKey, "scanState"), QVariant(1));
        other.now = start + 10 * minute;
        QCOMPARE(other.database.fieldValue(pumpKey, DataField::TotalOnDuration), QVariant(30.0));
        QVERIFY(other.database.takeStale(start + 10 * minute).empty());
        QVERIFY(!other.take(flowKey, start - 1, 1));
        QVERIFY(other.take(flowKey, start + minute, 50));
        QCOMPARE(other.mark(flowKey, "quality"), 0);

        const QByteArray state = plant.database.state(flowKey);
        QVERIFY(!other.database.restore(flowKey, state.chopped(1)));
        QVERIFY(!other.database.restore(flowKey, {}));
        QVERIFY(!other.database.restore(pumpKey, state));
        QVERIFY(!other.database.restore({ScadaObjectType::RtuObject, 9}, state));
        QCOMPARE(other.member(flowKey, "value"), QVariant(50.0));
    }
};

QTEST_GUILESS_MAIN(tst_PresentValues)
#include "tst_presentvalues.moc"
