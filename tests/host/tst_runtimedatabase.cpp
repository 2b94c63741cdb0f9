#include "host/runtime/runtimedatabase.h"

#include "platform/data/tagresolution.h"

#include <QtTest>

using Korvane::ScadaObjectType;

Q_DECLARE_METATYPE(RuntimeDatabase::Object)

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
        RuntimeDatabase::Object unit{ScadaObjectType::RtuObject, 7, QStringLiteral("RTU")};
        unit.description = QStringLiteral("Terminal unit of the intake");
        QVERIFY(database.add(unit));
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
