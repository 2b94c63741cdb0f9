#include "platform/ui/pointtreemodel.h"
#include "tests/support/stationlist.h"

#include <QAbstractItemModelTester>
#include <QLocale>
#include <QSignalSpy>
#include <QtTest>

#include <rapidcheck.h>

using Korvane::BrowseType;
using Korvane::BrowseTypeFlag;
using Korvane::ScadaObjectType;
using Station = PointDirectory::Station;

namespace {

const BrowseTypeFlag everything(0x17);

/// The tree as one text: "station[tag tag] station[...]".
QString outline(const PointTreeModel& model)
{
    QStringList stations;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex station = model.index(row, 0);
        QStringList tags;
        for (int i = 0; i < model.rowCount(station); ++i)
            tags.append(model.index(i, 0, station).data().toString());
        stations.append(station.data().toString() + QLatin1Char('[') + tags.join(QLatin1Char(' ')) + QLatin1Char(']'));
    }
    return stations.join(QLatin1Char(' '));
}

QStringList cells(const QModelIndex& row)
{
    QStringList texts;
    for (int column = 0; column < row.model()->columnCount(); ++column)
        texts.append(row.sibling(row.row(), column).data().toString());
    return texts;
}

/// Short texts of few letters, so that filters hit.
rc::Gen<QString> anyText()
{
    return rc::gen::map(rc::gen::container<std::string>(rc::gen::elementOf(std::string("aAbB1. "))),
                        [](const std::string& text) { return QString::fromStdString(text); });
}

rc::Gen<std::vector<Station>> anyStations()
{
    const auto entry = rc::gen::map(
        rc::gen::tuple(rc::gen::element(0, 1, 2, 3, 6, 7, -1), rc::gen::inRange(1, 9), anyText(), anyText()),
        [](const std::tuple<int, int, QString, QString>& parts) {
            const auto& [type, id, name, description] = parts;
            return PointDirectory::Entry{{ScadaObjectType(type), id}, name, description};
        });
    const auto objects = rc::gen::container<std::vector<PointDirectory::Entry>>(entry);
    return rc::gen::container<std::vector<Station>>(
        rc::gen::map(rc::gen::pair(anyText(), objects), [](const auto& parts) {
            return Station{parts.first, parts.second};
        }));
}

bool isOfKinds(const PointDirectory::Entry& object, BrowseTypeFlag types)
{
    const QMap<int, int> bits{{0, 0x01}, {1, 0x02}, {2, 0x04}, {3, 0x10}, {6, 0x03}};
    return (int(types) & bits.value(int(object.key.type))) != 0;
}

/// What the tree must show, said plainly.
QString plainOutline(const std::vector<Station>& stations, BrowseTypeFlag types, const QString& filter)
{
    const QMap<int, QString> prefixes{{2, QStringLiteral("@R::")}, {3, QStringLiteral("@C::")}};
    QStringList shown;
    for (const Station& station : stations) {
        QStringList tags;
        for (const PointDirectory::Entry& object : station.objects) {
            const QString tag = prefixes.value(int(object.key.type)) + object.name;
            const bool matches = filter.isEmpty() || tag.contains(filter, Qt::CaseInsensitive) ||
                                 object.description.contains(filter, Qt::CaseInsensitive) ||
                                 station.name.contains(filter, Qt::CaseInsensitive);
            if (matches && isOfKinds(object, types))
                tags.append(tag);
        }
        const QString name = station.name.isEmpty() ? QStringLiteral("(no station)") : station.name;
        if (!tags.isEmpty())
            shown.append(name + QLatin1Char('[') + tags.join(QLatin1Char(' ')) + QLatin1Char(']'));
    }
    return shown.join(QLatin1Char(' '));
}

} // namespace

class tst_PointTreeModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void kinds_data()
    {
        QTest::addColumn<int>("types");
        QTest::addColumn<QString>("expected");
        QTest::newRow("all kinds, in the directory's order")
            << 0x17 << "North intake[P1.FLOW P1.RUN LEVEL] Pump house[P2.FLOW DOOR] (no station)[@R::RTU1 @C::COM1]";
        QTest::newRow("points and units") << 7
                                          << "North intake[P1.FLOW P1.RUN LEVEL] Pump house[P2.FLOW DOOR] "
                                             "(no station)[@R::RTU1]";
        QTest::newRow("digital points") << 0x01 << "North intake[P1.RUN] Pump house[DOOR]";
        QTest::newRow("analog points") << 0x02 << "North intake[P1.FLOW LEVEL] Pump house[P2.FLOW]";
        QTest::newRow("units") << 0x04 << "(no station)[@R::RTU1]";
        QTest::newRow("lines") << 0x10 << "(no station)[@C::COM1]";
        QTest::newRow("a kind that there is none of") << 0x08 << "";
        QTest::newRow("none") << 0 << "";
    }
    void kinds()
    {
        QFETCH(int, types);
        QFETCH(QString, expected);
        const PointTreeModel model(someStations(), BrowseTypeFlag(types));
        QCOMPARE(outline(model), expected);
    }

    void aPointOfUnknownKindIsAnyPoint()
    {
        const std::vector<Station> stations{
            {QStringLiteral("S"), {{{ScadaObjectType::Point, 5}, QStringLiteral("P"), {}}}}};
        QCOMPARE(outline(PointTreeModel(stations, BrowseType::DigitalPoints)), QStringLiteral("S[P]"));
        QCOMPARE(outline(PointTreeModel(stations, BrowseType::AnalogPoints)), QStringLiteral("S[P]"));
        QCOMPARE(outline(PointTreeModel(stations, BrowseType::Units)), QString());
    }

    void filters_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a name") << "P1.FLOW"
                                << "North intake[P1.FLOW]";
        QTest::newRow("in any case") << "p1.Fl"
                                     << "North intake[P1.FLOW]";
        QTest::newRow("in two stations") << "flow"
                                         << "North intake[P1.FLOW] Pump house[P2.FLOW]";
        QTest::newRow("a description") << "WELL"
                                       << "North intake[LEVEL]";
        QTest::newRow("a station shows all of it") << "house"
                                                   << "Pump house[P2.FLOW DOOR]";
        QTest::newRow("a station, and a description of another")
            << "pump"
            << "North intake[P1.FLOW P1.RUN] Pump house[P2.FLOW DOOR]";
        QTest::newRow("a prefix") << "@r::"
                                  << "(no station)[@R::RTU1]";
        QTest::newRow("the objects of no station have no station's name") << "no station"
                                                                          << "";
        QTest::newRow("blanks around it do not count") << "  flow "
                                                       << "North intake[P1.FLOW] Pump house[P2.FLOW]";
        QTest::newRow("a blank inside does") << "pump 1"
                                             << "North intake[P1.FLOW P1.RUN]";
        QTest::newRow("nothing from one text into the next") << "FLOWFlow"
                                                             << "";
        QTest::newRow("nothing from one object into the next") << "1P1"
                                                               << "";
        QTest::newRow("no pattern") << "P.\\."
                                    << "";
        QTest::newRow("nothing") << "zzz"
                                 << "";
    }
    void filters()
    {
        QFETCH(QString, filter);
        QFETCH(QString, expected);
        PointTreeModel model(someStations(), everything);
        const QString before = outline(model);
        model.setFilter(filter);
        QVERIFY(model.isFiltered());
        QCOMPARE(outline(model), expected);
        model.setFilter(QString());
        QVERIFY(!model.isFiltered());
        QCOMPARE(outline(model), before);
    }

    void textsOfOtherScripts_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<bool>("isFound");
        QTest::newRow("Korean") << QStringLiteral("펌프") << true;
        QTest::newRow("a capital with an accent") << QStringLiteral("DÉBIT") << true;
        QTest::newRow("Greek") << QStringLiteral("ΔP") << true;
        QTest::newRow("another accent") << QStringLiteral("dèbit") << false;
    }
    void textsOfOtherScripts()
    {
        QFETCH(QString, filter);
        QFETCH(bool, isFound);
        const std::vector<Station> stations{
            {QStringLiteral("S"),
             {{{ScadaObjectType::AnalogPoint, 200001}, QStringLiteral("P"), QStringLiteral("펌프 débit δp")}}}};
        PointTreeModel model(stations, everything);
        model.setFilter(filter);
        QCOMPARE(model.shownCount(), isFound ? 1 : 0);
    }

    void anyFilterShowsWhatThePlainWordsSay()
    {
        QVERIFY(rc::check("any stations, kinds and filters in turn", [] {
            const auto stations = *rc::gen::resize(8, anyStations());
            const BrowseTypeFlag types(*rc::gen::inRange(0, 0x20));
            PointTreeModel model(stations, types);
            const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
            for (int i = 0; i < 3; ++i) {
                const QString filter = (*anyText()).trimmed();
                model.setFilter(filter);
                RC_ASSERT(outline(model).toStdString() == plainOutline(stations, types, filter).toStdString());
            }
        }));
    }

    void countsAreOfObjects()
    {
        PointTreeModel model(someStations(), BrowseTypeFlag(7));
        QCOMPARE(model.objectCount(), 6);
        QCOMPARE(model.shownCount(), 6);
        model.setFilter(QStringLiteral("flow"));
        QCOMPARE(model.objectCount(), 6);
        QCOMPARE(model.shownCount(), 2);
        model.setFilter(QStringLiteral("zzz"));
        QCOMPARE(model.shownCount(), 0);
    }

    void theModelIsResetOnlyByAnotherFilter()
    {
        PointTreeModel model(someStations(), everything);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        model.setFilter(QStringLiteral("  "));
        QCOMPARE(resets.size(), 0);
        model.setFilter(QStringLiteral("flow"));
        QCOMPARE(resets.size(), 1);
        model.setFilter(QStringLiteral("FLOW "));
        QCOMPARE(resets.size(), 1);
    }

    void cellsSayWhatAnEngineerWants()
    {
        PointTreeModel model(someStations(), everything);
        QStringList titles;
        for (int column = 0; column < model.columnCount(); ++column)
            titles.append(model.headerData(column, Qt::Horizontal).toString());
        QCOMPARE(titles.join(QLatin1Char('|')), QStringLiteral("Name|Description|Kind|Number"));

        const auto row = [&model](int station, int object) {
            return cells(model.index(object, 0, model.index(station, 0))).join(QLatin1Char('|'));
        };
        QCOMPARE(row(0, 0), QStringLiteral("P1.FLOW|Flow behind pump 1|Analog point|200001"));
        QCOMPARE(row(0, 1), QStringLiteral("P1.RUN|Pump 1 is running|Digital point|100001"));
        QCOMPARE(row(1, 0), QStringLiteral("P2.FLOW||Analog point|200003"));
        QCOMPARE(row(2, 0), QStringLiteral("@R::RTU1|Terminal unit|Unit|1"));
        QCOMPARE(row(2, 1), QStringLiteral("@C::COM1|Leased line|Line|1"));
        QCOMPARE(cells(model.index(0, 0)).join(QLatin1Char('|')), QStringLiteral("North intake|3 in all||"));
        model.setFilter(QStringLiteral("level"));
        QCOMPARE(cells(model.index(0, 0)).join(QLatin1Char('|')), QStringLiteral("North intake|1 of 3||"));
    }

    void manyAreCountedWithGroups()
    {
        Station large{QStringLiteral("L"), {}};
        for (int i = 0; i < 1500; ++i)
            large.objects.push_back({{ScadaObjectType::AnalogPoint, 200001 + i}, QStringLiteral("P%1").arg(i), {}});
        const PointTreeModel model({large}, everything);
        QCOMPARE(model.index(0, PointTreeModel::Description).data().toString(), QStringLiteral("1,500 in all"));
    }

    void anItemIsWhatTheRowShows()
    {
        PointTreeModel model(someStations(), everything);
        model.setFilter(QStringLiteral("rtu"));
        const QModelIndex station = model.index(0, 0);
        const Korvane::BrowerItemInfo unit{ScadaObjectType::RtuObject,      1,
                                           QStringLiteral("@R::RTU1"),      QStringLiteral("RTU1"),
                                           QStringLiteral("Terminal unit"), QString()};
        for (int column = 0; column < model.columnCount(); ++column)
            QCOMPARE(model.item(model.index(0, column, station)), unit);
        QCOMPARE(model.item(station), Korvane::BrowerItemInfo());
        QCOMPARE(model.item(QModelIndex()), Korvane::BrowerItemInfo());
    }

    void objectsAreFoundByKey_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("shown"); // with the filter "flow"
        QTest::addColumn<QString>("unfiltered");
        QTest::newRow("an analog point") << 1 << 200003 << "P2.FLOW"
                                         << "P2.FLOW";
        QTest::newRow("by the kind of any point") << 6 << 200003 << "P2.FLOW"
                                                  << "P2.FLOW";
        QTest::newRow("a digital one likewise") << 6 << 100002 << ""
                                                << "DOOR";
        QTest::newRow("of the other kind") << 0 << 200003 << ""
                                           << "";
        QTest::newRow("a unit") << 2 << 1 << ""
                                << "@R::RTU1";
        QTest::newRow("a line of the same number") << 3 << 1 << ""
                                                   << "@C::COM1";
        QTest::newRow("a unit's number as a point") << 6 << 1 << ""
                                                    << "";
        QTest::newRow("none") << -1 << 0 << ""
                              << "";
        QTest::newRow("an unknown number") << 6 << 0 << ""
                                           << "";
    }
    void objectsAreFoundByKey()
    {
        QFETCH(int, type);
        QFETCH(int, id);
        QFETCH(QString, shown);
        QFETCH(QString, unfiltered);
        const ObjectKey key{ScadaObjectType(type), id};
        PointTreeModel model(someStations(), everything);
        QCOMPARE(model.indexOf(key).data().toString(), unfiltered);
        model.setFilter(QStringLiteral("flow"));
        QCOMPARE(model.indexOf(key).data().toString(), shown);
        QCOMPARE(model.contains(key), !unfiltered.isEmpty());
    }

    void anEmptyTreeIsOne()
    {
        PointTreeModel model({}, everything);
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.objectCount(), 0);
        model.setFilter(QStringLiteral("a"));
        QCOMPARE(model.shownCount(), 0);
        QVERIFY(!model.indexOf({ScadaObjectType::AnalogPoint, 200001}).isValid());
    }
};

QTEST_GUILESS_MAIN(tst_PointTreeModel)
#include "tst_pointtreemodel.moc"
