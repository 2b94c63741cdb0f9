#include "host/runtime/runtimedatabase.h"

#include "platform/data/tagresolution.h"
#include "platform/data/valuemarks.h"

#include <QtTest>

#include <limits>

using Korvane::ScadaObjectType;

Q_DECLARE_METATYPE(RuntimeDatabase::Object)

namespace {

constexpr qint64 begin = Q_INT64_C(1600000000000);
constexpr double noLimit = std::numeric_limits<double>::quiet_NaN();
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey pump{ScadaObjectType::DigitalPoint, 100001};
constexpr ObjectKey unit{ScadaObjectType::RtuObject, 7};

/// LEVEL with a high limit of 80 and a hysteresis of 2, PUMP, and UNIT; values are stale after 10 s.
struct OneLevel
{
    OneLevel()
    {
        RuntimeDatabase::Object object{level.type, level.id, QStringLiteral("LEVEL")};
        object.high = 80;
        object.hysteresis = 2;
        object.staleAfter = std::chrono::seconds(10);
        RuntimeDatabase::Object unitObject{unit.type, unit.id, QStringLiteral("UNIT")};
        unitObject.staleAfter = std::chrono::seconds(10);
        database.setTimeZone(QTimeZone::utc());
        database.setClock([this] { return nowMs; });
        for (const auto& each :
             {object, unitObject, RuntimeDatabase::Object{pump.type, pump.id, QStringLiteral("PUMP")}}) {
            if (!database.add(each))
                qFatal("an object was refused");
        }
    }
    void take(qint64 ms, double value)
    {
        if (!database.takeSample({level, begin + ms, value, 0}))
            qFatal("a sample was ignored");
    }
    int limitMarks() const { return database.presentRecord(level).GetValue("limit")->toInt32(); }
    int quality() const { return database.presentRecord(level).GetValue("quality")->toInt32(); }

    qint64 nowMs = begin;
    RuntimeDatabase database;
};

} // namespace

class tst_RuntimeDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsWhatWasAdded()
    {
        RuntimeDatabase database;
        QVERIFY(database.add({ScadaObjectType::DigitalPoint, 100001, QStringLiteral("VALVE")}));
        QVERIFY(database.add({ScadaObjectType::AnalogPoint, 200001, QStringLiteral("FLOW")}));
        QVERIFY(database.add({ScadaObjectType::RtuObject, 1, QStringLiteral("FLOW")}));
        QVERIFY(database.add({ScadaObjectType::ChannelObject, 1, QStringLiteral("12")}));

        QCOMPARE(database.findByName(ScadaObjectType::Point, QStringLiteral("VALVE")),
                 (ObjectKey{ScadaObjectType::DigitalPoint, 100001}));
        QCOMPARE(database.findByName(ScadaObjectType::Point, QStringLiteral("FLOW")),
                 (ObjectKey{ScadaObjectType::AnalogPoint, 200001}));
        QCOMPARE(database.findByName(ScadaObjectType::RtuObject, QStringLiteral("FLOW")),
                 (ObjectKey{ScadaObjectType::RtuObject, 1}));
        QCOMPARE(database.findByName(ScadaObjectType::ChannelObject, QStringLiteral("12")),
                 (ObjectKey{ScadaObjectType::ChannelObject, 1}));
        QCOMPARE(database.findById(ScadaObjectType::Point, 200001), (ObjectKey{ScadaObjectType::AnalogPoint, 200001}));
        QCOMPARE(database.findPoint(QStringLiteral("VALVE")), (ObjectKey{ScadaObjectType::DigitalPoint, 100001}));
        QCOMPARE(database.count(ScadaObjectType::Point), std::size_t(2));
        QCOMPARE(database.count(ScadaObjectType::RtuObject), std::size_t(1));

        QVERIFY(!database.findByName(ScadaObjectType::Point, QStringLiteral("12")).isValid());
        QVERIFY(!database.findByName(ScadaObjectType::ApplicationProperty, QStringLiteral("FLOW")).isValid());
        QVERIFY(!database.findById(ScadaObjectType::RtuObject, 200001).isValid());
        QVERIFY(!database.findById(ScadaObjectType::NoObject, 1).isValid());
        QCOMPARE(database.count(ScadaObjectType::NoObject), std::size_t(0));
    }

    void holdsWhatThePointListSays()
    {
        RuntimeDatabase database;
        RuntimeDatabase::Object flow{ScadaObjectType::AnalogPoint, 200001, QStringLiteral("FLOW")};
        flow.station = QStringLiteral("LOOP");
        flow.description = QStringLiteral("Flow behind the pump");
        flow.displayName = QStringLiteral("Flow");
        flow.low = 0.5;
        flow.highHigh = 90;
        QVERIFY(database.add(flow));
        QVERIFY(database.add({ScadaObjectType::RtuObject, 1, QStringLiteral("RTU1")}));

        const ObjectKey key{ScadaObjectType::AnalogPoint, 200001};
        using DataCode::DataField;
        QCOMPARE(database.fieldValue(key, DataField::PointName), QVariant(QStringLiteral("FLOW")));
        QCOMPARE(database.fieldValue(key, DataField::StationName), QVariant(QStringLiteral("LOOP")));
        QCOMPARE(database.fieldValue(key, DataField::FullName), QVariant(QStringLiteral("LOOP.FLOW")));
        QCOMPARE(database.fieldValue(key, DataField::Description), QVariant(QStringLiteral("Flow behind the pump")));
        QCOMPARE(database.fieldValue(key, DataField::DisplayName), QVariant(QStringLiteral("Flow")));
        QCOMPARE(database.fieldValue(key, DataField::LowLimit), QVariant(0.5));
        QCOMPARE(database.fieldValue(key, DataField::HighHighLimit), QVariant(90.0));
        QVERIFY(!database.fieldValue(key, DataField::HighLimit).isValid());
        QVERIFY(!database.fieldValue(key, DataField::LowLowLimit).isValid());
        QVERIFY(!database.fieldValue(key, DataField::TodayMaximum).isValid());
        QCOMPARE(database.fieldValue({ScadaObjectType::RtuObject, 1}, DataField::FullName),
                 QVariant(QStringLiteral("RTU1")));
        QVERIFY(!database.fieldValue({ScadaObjectType::RtuObject, 1}, DataField::Description).isValid());
        QVERIFY(!database.fieldValue({ScadaObjectType::RtuObject, 200001}, DataField::PointName).isValid());
        QVERIFY(!database.fieldValue({ScadaObjectType::NoObject, 1}, DataField::PointName).isValid());
    }

    void stationsAreInTheOrderOfTheirFirstObject_data()
    {
        using Objects = QVector<RuntimeDatabase::Object>;
        const auto object = [](ScadaObjectType type, qint32 id, const char* name, const char* station) {
            RuntimeDatabase::Object made{type, id, QString::fromLatin1(name)};
            made.station = QString::fromLatin1(station);
            return made;
        };
        const auto analog = [object](qint32 id, const char* name, const char* station) {
            return object(ScadaObjectType::AnalogPoint, id, name, station);
        };
        QTest::addColumn<Objects>("objects");
        QTest::addColumn<QString>("expected"); // "station: kind/id name, ..." by station
        QTest::newRow("no objects, no stations") << Objects() << QString();
        QTest::newRow("stations and their points as added, not by name or id")
            << Objects{analog(200009, "B", "West"), analog(200001, "C", "East"), analog(200005, "A", "West")}
            << "West: 1/200009 B, 1/200005 A; East: 1/200001 C";
        QTest::newRow("objects of no station stand together where the first of them does")
            << Objects{analog(200001, "A", ""), analog(200002, "B", "East"), analog(200003, "C", "")}
            << ": 1/200001 A, 1/200003 C; East: 1/200002 B";
        QTest::newRow("digital and analog points keep their order among each other")
            << Objects{analog(200001, "A", "East"), object(ScadaObjectType::DigitalPoint, 100001, "B", "East"),
                       analog(200002, "C", "East")}
            << "East: 1/200001 A, 0/100001 B, 1/200002 C";
        QTest::newRow("points first, then units, then lines, however they were added")
            << Objects{object(ScadaObjectType::ChannelObject, 1, "COM", "East"),
                       object(ScadaObjectType::RtuObject, 1, "RTU", "East"), analog(200001, "A", "East")}
            << "East: 1/200001 A, 2/1 RTU, 3/1 COM";
        QTest::newRow("a station of a unit alone, and units and lines of none")
            << Objects{analog(200001, "A", "East"), object(ScadaObjectType::RtuObject, 1, "RTU1", "North"),
                       object(ScadaObjectType::RtuObject, 2, "RTU2", ""),
                       object(ScadaObjectType::ChannelObject, 2, "COM2", "")}
            << "East: 1/200001 A; North: 2/1 RTU1; : 2/2 RTU2, 3/2 COM2";
        QTest::newRow("stations differ in case") << Objects{analog(200001, "A", "East"), analog(200002, "B", "EAST")}
                                                 << "East: 1/200001 A; EAST: 1/200002 B";
    }
    void stationsAreInTheOrderOfTheirFirstObject()
    {
        QFETCH(QVector<RuntimeDatabase::Object>, objects);
        QFETCH(QString, expected);
        RuntimeDatabase database;
        for (const RuntimeDatabase::Object& object : qAsConst(objects))
            QVERIFY(database.add(object));

        QStringList stations;
        for (const PointDirectory::Station& station : database.stations()) {
            QStringList entries;
            for (const PointDirectory::Entry& entry : station.objects)
                entries.append(QStringLiteral("%1/%2 %3").arg(int(entry.key.type)).arg(entry.key.id).arg(entry.name));
            stations.append(station.name + QLatin1String(": ") + entries.join(QLatin1String(", ")));
        }
        QCOMPARE(stations.join(QLatin1String("; ")), expected);
    }

    void stationsCarryTheDescriptions()
    {
        RuntimeDatabase database;
        RuntimeDatabase::Object intake{ScadaObjectType::RtuObject, 7, QStringLiteral("RTU")};
        intake.description = QStringLiteral("Terminal unit of the intake");
        QVERIFY(database.add(intake));
        const std::vector<PointDirectory::Station> stations = database.stations();
        QCOMPARE(stations.size(), std::size_t(1));
        QCOMPARE(stations.front().name, QString());
        QCOMPARE(stations.front().objects.front().description, QStringLiteral("Terminal unit of the intake"));
    }

    void namesStayFoundWhileItGrows()
    {
        RuntimeDatabase database;
        for (int i = 0; i < 5000; ++i)
            QVERIFY(database.add({ScadaObjectType::AnalogPoint, 200001 + i, QStringLiteral("P%1").arg(i)}));
        for (int i = 0; i < 5000; ++i)
            QCOMPARE(database.findPoint(QStringLiteral("P%1").arg(i)).id, 200001 + i);
    }

    void refusals_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        const QString unreachable =
            QStringLiteral("no tag could reach this name: it is empty, a number, \"#\" with an id, "
                           "begins with \"@\" or ends in \":\" and a field");
        QTest::newRow("a constant") << -1 << 1 << "X"
                                    << "X (id 1): kind -1 is no point, unit or line";
        QTest::newRow("a property") << 7 << 1 << "X"
                                    << "X (id 1): kind 7 is no point, unit or line";
        QTest::newRow("a point of unknown kind") << 6 << 200003 << "X"
                                                 << "X (id 200003): kind 6 is no point, unit or line";
        QTest::newRow("a digital id for an analog point")
            << 1 << 100001 << "X"
            << "X (id 100001): the id is outside the range of its kind, 200001 to 2999999";
        QTest::newRow("an id behind the analog range")
            << 1 << 3000000 << "X"
            << "X (id 3000000): the id is outside the range of its kind, 200001 to 2999999";
        QTest::newRow("an id before the digital range")
            << 0 << 100000 << "X"
            << "X (id 100000): the id is outside the range of its kind, 100001 to 199999";
        QTest::newRow("a unit without an id") << 2 << 0 << "X"
                                              << "X (id 0): the id is outside the range of its kind, 1 upwards";
        QTest::newRow("an id twice") << 1 << 200001 << "X"
                                     << "X (id 200001): the id is taken by FLOW";
        QTest::newRow("a name twice") << 1 << 200002 << "FLOW"
                                      << "FLOW (id 200002): the name is taken by id 200001";
        QTest::newRow("a name twice, of another kind of point") << 0 << 100001 << "FLOW"
                                                                << "FLOW (id 100001): the name is taken by id 200001";
        QTest::newRow("a number as a point's name")
            << 1 << 200002 << "12" << QLatin1String("12 (id 200002): ") + unreachable;
        QTest::newRow("a field at the end")
            << 1 << 200002 << "A:Value" << QLatin1String("A:Value (id 200002): ") + unreachable;
        QTest::newRow("an empty name") << 2 << 2 << "" << QLatin1String(" (id 2): ") + unreachable;
    }
    void refusals()
    {
        QFETCH(int, type);
        QFETCH(int, id);
        QFETCH(QString, name);
        QFETCH(QString, reason);

        RuntimeDatabase database;
        QVERIFY(database.add({ScadaObjectType::AnalogPoint, 200001, QStringLiteral("FLOW")}));
        const auto added = database.add({ScadaObjectType(type), id, name});
        QVERIFY(!added);
        QCOMPARE(added.error(), reason);
        QCOMPARE(database.count(ScadaObjectType::Point), std::size_t(1));
        QCOMPARE(database.count(ScadaObjectType::RtuObject), std::size_t(0));
        QCOMPARE(database.findPoint(QStringLiteral("FLOW")).id, 200001);
    }

    // What operators change

    void limitsInForceAreThoseOfTheListUntilTheyAreSet()
    {
        OneLevel one;
        QCOMPARE(one.database.limits(level).high, 80.0);
        QCOMPARE(one.database.hysteresis(level), 2.0);
        one.take(0, 70);
        QCOMPARE(one.limitMarks(), 0);
        QVERIFY(one.database.setLimits(level, {noLimit, 10, 60, 90}));
        QCOMPARE(one.limitMarks(), int(ValueMark::AboveHigh)); // without waiting for a sample
        QCOMPARE(one.database.fieldValue(level, DataCode::DataField::HighHighLimit), QVariant(90.0));
        QVERIFY(one.database.setLimits(level, {noLimit, 10, noLimit, noLimit}));
        QCOMPARE(one.limitMarks(), 0); // beyond no limit that there is
        QVERIFY(one.database.setLimits(level, {noLimit, 75, noLimit, noLimit}));
        QCOMPARE(one.limitMarks(), int(ValueMark::BelowLow));
        QVERIFY(one.database.setLimits(level, {noLimit, noLimit, noLimit, noLimit}));
        QCOMPARE(one.limitMarks(), 0);
    }

    void limitsStandInTheirOrder_data()
    {
        QTest::addColumn<QVector<double>>("limits");
        QTest::addColumn<bool>("isTaken");
        const double infinity = std::numeric_limits<double>::infinity();
        QTest::newRow("in order") << QVector<double>{1, 2, 3, 4} << true;
        QTest::newRow("the outer as the inner") << QVector<double>{2, 2, 3, 3} << true;
        QTest::newRow("none") << QVector<double>{noLimit, noLimit, noLimit, noLimit} << true;
        QTest::newRow("low as high") << QVector<double>{1, 3, 3, 4} << false;
        QTest::newRow("low low above low") << QVector<double>{2.5, 2, 3, 4} << false;
        QTest::newRow("high above high high") << QVector<double>{1, 2, 4.5, 4} << false;
        QTest::newRow("low low above high, without a low") << QVector<double>{5, noLimit, 3, 4} << false;
        QTest::newRow("low above high high, without a high") << QVector<double>{1, 5, noLimit, 4} << false;
        QTest::newRow("the outer ones alone") << QVector<double>{5, noLimit, noLimit, 4} << false;
        QTest::newRow("infinite") << QVector<double>{-infinity, 2, 3, 4} << false;
    }
    void limitsStandInTheirOrder()
    {
        QFETCH(QVector<double>, limits);
        QFETCH(bool, isTaken);
        OneLevel one;
        QCOMPARE(one.database.setLimits(level, {limits[0], limits[1], limits[2], limits[3]}).has_value(), isTaken);
        QCOMPARE(one.database.limits(level).high == 80, !isTaken);
        QVERIFY(!one.database.setLimits(pump, {}));
        QVERIFY(!one.database.setLimits({ScadaObjectType::AnalogPoint, 299999}, {}));
    }

    void theHysteresisInForceJudges()
    {
        OneLevel one;
        one.take(0, 81);
        one.take(1, 79); // within the list's hysteresis of 2
        QCOMPARE(one.limitMarks(), int(ValueMark::AboveHigh));
        QVERIFY(one.database.setHysteresis(level, 1));
        QCOMPARE(one.limitMarks(), 0); // 79 is at 80 minus 1
        QVERIFY(!one.database.setHysteresis(level, -0.5));
        QVERIFY(!one.database.setHysteresis(level, noLimit));
        QVERIFY(!one.database.setHysteresis(pump, 1));
        QCOMPARE(one.database.hysteresis(level), 1.0);
        QVERIFY(one.database.setHysteresis(level, 0));
    }

    void tagMarksStandInTheRecord()
    {
        OneLevel one;
        QVERIFY(one.database.setTagMarks(level, ValueMark::AlarmInhibited));
        QVERIFY(!one.database.setTagMarks(level, ValueMark::AlarmInhibited));
        QCOMPARE(one.database.presentRecord(level).GetValue("tag")->toInt32(), qint32(ValueMark::AlarmInhibited));
        one.take(0, 5); // a sample takes none of them away
        QCOMPARE(one.database.tagMarks(level), qint32(ValueMark::AlarmInhibited));
        QVERIFY(!one.database.setTagMarks({ScadaObjectType::AnalogPoint, 299999}, 1));
        QCOMPARE(one.database.tagMarks({ScadaObjectType::AnalogPoint, 299999}), 0);
    }

    void aValueHeldByHandDoesNotGoStale()
    {
        OneLevel one;
        one.take(0, 5);
        one.database.setHeldByHand(level, true);
        QVERIFY(one.database.takeStale(begin + 60000).empty());
        QCOMPARE(one.quality(), 0);
        one.database.setHeldByHand(level, false);
        QCOMPARE(one.database.takeStale(begin + 60000), std::vector<ObjectKey>{level});
        QCOMPARE(one.quality(), int(ValueMark::Stale));
    }

    void aValueIsMadeStaleOnce()
    {
        OneLevel one;
        QVERIFY(!one.database.setStale(level, begin)); // there is none
        one.take(0, 5);
        QVERIFY(one.database.setStale(level, begin + 10));
        QVERIFY(!one.database.setStale(level, begin + 20));
        QCOMPARE(one.quality(), int(ValueMark::Stale));
        one.take(30, 5);
        QCOMPARE(one.quality(), 0);
    }

    void statisticsKnowSinceWhenTheyRun()
    {
        OneLevel one;
        const auto highest = [&one] { return one.database.fieldValue(level, DataCode::DataField::TotalMaximum); };
        QVERIFY(!one.database.statisticsSinceMs(level));
        QVERIFY(!one.database.resetStatistics(level, begin));
        QVERIFY(!one.database.lastChangeMs(level));
        one.take(0, 90);
        one.take(1000, 50);
        one.take(2000, 50);
        one.nowMs = begin + 3000;
        QCOMPARE(highest(), QVariant(90.0));
        QCOMPARE(one.database.statisticsSinceMs(level).value_or(0), begin);
        QCOMPARE(one.database.lastChangeMs(level).value_or(0), begin + 1000);
        QVERIFY(one.database.resetStatistics(level, begin + 2500));
        QCOMPARE(highest(), QVariant(50.0)); // the present value counts from then on
        QCOMPARE(one.database.statisticsSinceMs(level).value_or(0), begin + 2500);
        QCOMPARE(one.database.lastChangeMs(level).value_or(0), begin + 1000); // the value is the same one

        OneLevel later;
        QVERIFY(later.database.restore(level, one.database.state(level)));
        QCOMPARE(later.database.statisticsSinceMs(level).value_or(0), begin + 2500);
        later.database.forgetValues();
        QVERIFY(!later.database.statisticsSinceMs(level));
    }

    void bytesOfTheFirstLayoutComeBack()
    {
        OneLevel one;
        one.take(0, 42);
        one.take(1000, 43);
        QByteArray bytes = one.database.state(level);
        QCOMPARE(int(bytes[0]), 2);
        // Layout byte, time, quality, flag and value; then, since layout 2, since when the statistics run.
        constexpr int placeOfSince = 1 + 8 + 4 + 1 + 8;
        bytes.remove(placeOfSince, 8);
        bytes[0] = 1;
        OneLevel later;
        QVERIFY(later.database.restore(level, bytes));
        later.nowMs = begin + 2000;
        QCOMPARE(later.database.presentRecord(level).GetValue("value")->toDouble(), 43.0);
        QCOMPARE(later.database.fieldValue(level, DataCode::DataField::TotalMinimum), QVariant(42.0));
        QVERIFY(!later.database.statisticsSinceMs(level)); // is not known
        for (const char layout : {'\0', '\3'}) {
            bytes[0] = layout;
            QVERIFY(!OneLevel().database.restore(level, bytes));
        }
    }

    void unitsKnowWhenTheyCameOnLineAndWentOffIt()
    {
        OneLevel one;
        const auto time = [&one](DataCode::DataField field) {
            return one.database.fieldValue(unit, field).toDateTime().toMSecsSinceEpoch() - begin;
        };
        const auto take = [&one](qint64 ms, double state) {
            QVERIFY(one.database.takeSample({unit, begin + ms, state, 0}));
        };
        const auto on = DataCode::DataField::CommOnlineTime;
        const auto off = DataCode::DataField::CommOfflineTime;
        QVERIFY(!one.database.fieldValue(unit, on).isValid());
        take(0, 1); // was it before? nobody knows
        QVERIFY(!one.database.fieldValue(unit, on).isValid());
        take(1000, 0);
        QCOMPARE(time(off), qint64(1000));
        take(2000, 0);
        take(3000, 1);
        take(4000, 1);
        QCOMPARE(time(off), qint64(1000));
        QCOMPARE(time(on), qint64(3000));
        QVERIFY(one.database.setCommunicationFailed(unit, true, begin + 5000));
        QCOMPARE(time(off), qint64(5000));
        QVERIFY(one.database.setCommunicationFailed(unit, false, begin + 6000));
        QCOMPARE(time(on), qint64(6000));
        QCOMPARE(one.database.takeStale(begin + 14000).size(), std::size_t(1)); // 10 s without a sample
        QCOMPARE(time(off), qint64(14000));
        one.database.forgetValues();
        QVERIFY(!one.database.fieldValue(unit, off).isValid());
        QVERIFY(!one.database.fieldValue(level, on).isValid()); // no field of a point
    }

    void resolvesAmongAMillionPoints()
    {
        constexpr int million = 1000000;
        RuntimeDatabase database;
        database.reserve(ScadaObjectType::Point, million);
        for (int i = 0; i < million; ++i)
            QVERIFY(database.add({ScadaObjectType::AnalogPoint, 200001 + i, QStringLiteral("STATION.P%1").arg(i)}));
        for (const int i : {0, 1, 499999, million - 1}) {
            const auto link = Korvane::resolveFromString(QStringLiteral("STATION.P%1:HighLimit").arg(i), &database);
            QCOMPARE(link.id, 200001 + i);
            QCOMPARE(link.type, ScadaObjectType::AnalogPoint);
        }
        QCOMPARE(Korvane::resolveFromString(QStringLiteral("STATION.P%1").arg(million), &database).id, 0);
    }
};

QTEST_GUILESS_MAIN(tst_RuntimeDatabase)
#include "tst_runtimedatabase.moc"
