#include "host/summary/summarymodel.h"
#include "platform/data/valuemarks.h"
#include "platform/ui/kvpointmimedata.h"
#include "tests/support/summaryplant.h"

#include <QAbstractItemModelTester>
#include <QFont>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <memory>

using Column = SummaryColumns::Column;

namespace {

/// A model over a plant that follows it.
class Shown
{
public:
    explicit Shown(const SummaryPlant& plant) : model(plant.database, QTimeZone("Asia/Seoul"))
    {
        model.setActive(true);
        settle();
    }
    void settle()
    {
        while (model.isArranging())
            QCoreApplication::processEvents();
    }
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder)
    {
        model.sort(column, order);
        settle();
    }
    void filter(const SummaryFilter& wanted)
    {
        model.setFilter(wanted);
        settle();
    }
    /// What stands in a column, from the top, joined by blanks.
    QString column(int wanted = Column::Name) const
    {
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts.append(model.index(row, wanted).data().toString());
        return texts.join(QLatin1Char(' '));
    }
    QVariant cell(int row, int column, int role = Qt::DisplayRole) const { return model.index(row, column).data(role); }

    SummaryModel model;
};

QString text(const char* latin)
{
    return QString::fromLatin1(latin);
}

/// What the model must show, worked out anew from cells.
std::vector<ObjectKey> plainList(const SummaryModel& model, const SummaryFilter& filter, int column,
                                 Qt::SortOrder order)
{
    const RuntimeDatabase& database = model.database();
    std::vector<ObjectKey> shown;
    for (const ObjectKey point : database.objects(Korvane::ScadaObjectType::Point)) {
        const auto code = [&](const char* member) { return database.presentRecord(point).GetValue(member)->toInt32(); };
        const RuntimeDatabase::Object& object = *database.object(point);
        const bool isText = object.name.toLower().contains(filter.text.toLower());
        const bool isArea = !filter.area || *filter.area == object.area;
        const bool isMarked = (code("quality") | code("limit")) != 0;
        const bool isBad = (code("quality") & (ValueMark::Invalid | ValueMark::Stale)) != 0;
        if (isText && isArea && (isMarked || !filter.isMarkedOnly) && (isBad || !filter.isUnreliableOnly))
            shown.push_back(point);
    }
    const auto comesFirst = [&](ObjectKey a, ObjectKey b) {
        if (column == Column::Name)
            return database.object(a)->name.toLower() < database.object(b)->name.toLower();
        return SummaryColumns::number(database, a, column) < SummaryColumns::number(database, b, column);
    };
    std::stable_sort(shown.begin(), shown.end(), [&](ObjectKey a, ObjectKey b) {
        return order == Qt::AscendingOrder ? comesFirst(a, b) : comesFirst(b, a);
    });
    return shown;
}

} // namespace

class tst_SummaryModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aModelThatRestsDoesNothing()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2});
        SummaryModel model(plant.database, QTimeZone::utc());
        model.sort(Column::Value);
        model.noteChanged({SummaryPlant::analog(0)});
        QCoreApplication::processEvents();
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.figures().slices, Q_INT64_C(0));
        QVERIFY(!model.isArranging());
    }

    void itRestsAgain()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2});
        Shown shown(plant);
        shown.sort(Column::Value);
        shown.model.setActive(false);
        QSignalSpy told(&shown.model, &QAbstractItemModel::dataChanged);
        const qint64 slices = shown.model.figures().slices;
        plant.sample(SummaryPlant::analog(0), 3);
        shown.model.noteChanged({SummaryPlant::analog(0)});
        shown.model.refresh();
        QVERIFY(!told.wait(2 * SummaryModel::gatheringMs));
        QCOMPARE(shown.model.figures().slices, slices);
        QCOMPARE(shown.column(), text("A0 A1"));
        shown.model.setActive(true);
        shown.settle();
        QCOMPARE(shown.column(), text("A1 A0"));
    }

    void everyPointIsShownInTheListsOrder()
    {
        SummaryPlant plant;
        plant.add(SummaryPlant::analog(5), text("B"));
        plant.add(SummaryPlant::digital(1), text("A"));
        plant.add({Korvane::ScadaObjectType::RtuObject, 1}, text("UNIT"));
        plant.add(SummaryPlant::analog(2), text("C"));
        Shown shown(plant);
        QCOMPARE(shown.column(), text("B A C"));
        QCOMPARE(shown.model.point(1), SummaryPlant::digital(1));
        QCOMPARE(shown.model.rowOf(SummaryPlant::analog(2)), 2);
        QCOMPARE(shown.model.rowOf(SummaryPlant::analog(3)), -1);
    }

    void pointsAddedLaterComeWhenItIsActiveAgain()
    {
        SummaryPlant plant;
        plant.addWithValues({1});
        Shown shown(plant);
        plant.add(SummaryPlant::analog(7), text("NEW"));
        shown.model.setActive(false);
        shown.model.setActive(true);
        shown.settle();
        QCOMPARE(shown.column(), text("A0 NEW"));
    }

    void cellsSayWhatIsKnown()
    {
        SummaryPlant plant;
        RuntimeDatabase::Object flow = SummaryPlant::object(SummaryPlant::analog(0), text("FLOW"));
        flow.description = text("Flow\nbehind the pump");
        flow.station = text("North");
        flow.area = text("Process");
        flow.unit = text("l/min");
        flow.decimals = 1;
        flow.lowLow = 1;
        flow.low = 2;
        flow.high = 9;
        flow.highHigh = 12.25;
        plant.add(flow);
        plant.sample(SummaryPlant::analog(0), 10);
        plant.passSeconds(60);
        plant.sample(SummaryPlant::analog(0), 4);
        plant.passSeconds(60);
        plant.sample(SummaryPlant::analog(0), 10.04);
        Shown shown(plant);
        const QStringList expected{text("FLOW"),
                                   text("Flow behind the pump"),
                                   text("North"),
                                   text("Process"),
                                   text("10.0 l/min"),
                                   text("l/min"),
                                   text("2026-03-01 17:02:00.000"), // nine hours ahead
                                   text("above high"),
                                   text("1.0"),
                                   text("2.0"),
                                   text("9.0"),
                                   text("12.3"),
                                   text("4.0"),
                                   text("10.0"),
                                   text("7.0"),
                                   QString(),
                                   QString()};
        QCOMPARE(expected.size(), int(Column::ColumnCount));
        for (int column = 0; column < Column::ColumnCount; ++column)
            QCOMPARE(shown.cell(0, column).toString(), expected[column]);
        QCOMPARE(shown.cell(0, Column::Value, SummaryModel::ValueRole), QVariant(10.04));
        QCOMPARE(shown.cell(0, Column::HighHigh, SummaryModel::ValueRole), QVariant(12.25));
        QCOMPARE(shown.cell(0, Column::Time, SummaryModel::ValueRole).toDateTime(), plant.now);
        QVERIFY(shown.cell(0, Column::Value, Qt::FontRole).value<QFont>().bold());
        QVERIFY(!shown.cell(0, Column::Name, Qt::FontRole).isValid());
    }

    void statesHaveNamesAndCounts()
    {
        SummaryPlant plant;
        RuntimeDatabase::Object pump = SummaryPlant::object(SummaryPlant::digital(0), text("PUMP"));
        pump.states = QStringList{text("Stopped"), text("Running")};
        plant.add(pump);
        for (const int state : {0, 1, 0, 1}) {
            plant.sample(SummaryPlant::digital(0), state);
            plant.passSeconds(3725);
        }
        Shown shown(plant);
        QCOMPARE(shown.cell(0, Column::Value).toString(), text("Running"));
        QCOMPARE(shown.cell(0, Column::TodayChanges).toString(), text("3"));
        QCOMPARE(shown.cell(0, Column::TodayOnTime).toString(), text("2:04:10"));
        QCOMPARE(shown.cell(0, Column::TodayMean).toString(), QString());
        QCOMPARE(shown.cell(0, Column::Value, SummaryModel::ValueRole), QVariant(text("Running")));
        QCOMPARE(shown.cell(0, Column::TodayOnTime, SummaryModel::ValueRole).toDouble(), 7450.0);
    }

    void aPointWithoutASampleSaysNothing()
    {
        SummaryPlant plant;
        plant.add(SummaryPlant::analog(0), text("A"));
        Shown shown(plant);
        for (const int column : {Column::Value, Column::Time, Column::High, Column::TodayMinimum})
            QCOMPARE(shown.cell(0, column).toString(), QString());
        QCOMPARE(shown.cell(0, Column::Marks).toString(), text("invalid"));
        QVERIFY(shown.cell(0, Column::Name, Qt::ForegroundRole).isValid());
        plant.sample(SummaryPlant::analog(0), 1);
        QCOMPARE(shown.cell(0, Column::Marks).toString(), text("good"));
        QVERIFY(!shown.cell(0, Column::Name, Qt::ForegroundRole).isValid());
    }

    void columnsKeepTheirNumbers()
    {
        SummaryPlant plant;
        const SummaryModel model(plant.database, QTimeZone("Asia/Seoul"));
        const char* titles[] = {"Name",       "Description", "Station",    "Area",          "Value",   "Unit",
                                "Time",       "Marks",       "Low low",    "Low",           "High",    "High high",
                                "Min. today", "Max. today",  "Mean today", "Changes today", "On today"};
        QCOMPARE(model.columnCount(), 17);
        for (int column = 0; column < 17; ++column)
            QCOMPARE(model.headerData(column, Qt::Horizontal).toString(), text(titles[column]));
        QCOMPARE(model.headerData(Column::Time, Qt::Horizontal, Qt::ToolTipRole).toString(),
                 text("Time zone: Asia/Seoul"));
    }

    void valuesSortAsNumbersAndNothingLiesBelow()
    {
        SummaryPlant plant;
        plant.addWithValues({10, 9.5, -2, 100});
        plant.add(SummaryPlant::analog(4), text("NONE"));
        plant.add(SummaryPlant::digital(0), text("STATE"));
        plant.sample(SummaryPlant::digital(0), 1);
        Shown shown(plant);
        shown.sort(Column::Value);
        QCOMPARE(shown.column(), text("NONE A2 STATE A1 A0 A3"));
        shown.sort(Column::Value, Qt::DescendingOrder);
        QCOMPARE(shown.column(), text("A3 A0 A1 STATE A2 NONE"));
        shown.sort(-1);
        QCOMPARE(shown.column(), text("A0 A1 A2 A3 NONE STATE"));
    }

    void equalRowsKeepTheListsOrderBothWays()
    {
        SummaryPlant plant;
        plant.addWithValues({2, 1, 2, 1});
        Shown shown(plant);
        shown.sort(Column::Value);
        QCOMPARE(shown.column(), text("A1 A3 A0 A2"));
        shown.sort(Column::Value, Qt::DescendingOrder);
        QCOMPARE(shown.column(), text("A0 A2 A1 A3"));
        shown.sort(Column::Description);
        QCOMPARE(shown.column(), text("A0 A1 A2 A3"));
    }

    void textsSortInWhateverCase()
    {
        SummaryPlant plant;
        int number = 0;
        for (const char* name : {"b", "C", "A", "c"})
            plant.add(SummaryPlant::analog(number++), text(name));
        Shown shown(plant);
        shown.sort(Column::Name);
        QCOMPARE(shown.column(), text("A b C c"));
        shown.sort(Column::Name, Qt::DescendingOrder);
        QCOMPARE(shown.column(), text("c C b A"));
    }

    void marksSortByWhatTheyTake()
    {
        SummaryPlant plant;
        int number = 0;
        for (const qint32 quality : {0, int(ValueMark::Stale), int(ValueMark::Estimated), 0, 0}) {
            RuntimeDatabase::Object object =
                SummaryPlant::object(SummaryPlant::analog(number), QStringLiteral("A%1").arg(number));
            object.high = 10;
            object.highHigh = 20;
            plant.add(object);
            plant.sample(SummaryPlant::analog(number), number == 3 ? 25 : (number == 4 ? 15 : 5), quality);
            ++number;
        }
        Shown shown(plant);
        shown.sort(Column::Marks);
        QCOMPARE(shown.column(), text("A0 A2 A4 A3 A1"));
    }

    void filters_data()
    {
        QTest::addColumn<QString>("searched");
        QTest::addColumn<QString>("station"); // "*" for all
        QTest::addColumn<QString>("area");
        QTest::addColumn<bool>("isMarkedOnly");
        QTest::addColumn<bool>("isUnreliableOnly");
        QTest::addColumn<QString>("expected");
        QTest::newRow("nothing set shows all") << ""
                                               << "*"
                                               << "*" << false << false << "P1 P2 P3 P4";
        QTest::newRow("a name, in whatever case") << "p2"
                                                  << "*"
                                                  << "*" << false << false << "P2";
        QTest::newRow("a description") << "LEVEL"
                                       << "*"
                                       << "*" << false << false << "P3";
        QTest::newRow("a station") << "nort"
                                   << "*"
                                   << "*" << false << false << "P1 P2";
        QTest::newRow("an area") << "electri"
                                 << "*"
                                 << "*" << false << false << "P2";
        QTest::newRow("nothing that is there") << "xyz"
                                               << "*"
                                               << "*" << false << false << "";
        QTest::newRow("one station") << ""
                                     << "North"
                                     << "*" << false << false << "P1 P2";
        QTest::newRow("no station") << ""
                                    << ""
                                    << "*" << false << false << "P4";
        QTest::newRow("one area") << ""
                                  << "*"
                                  << "Process" << false << false << "P1 P3";
        QTest::newRow("station and area") << ""
                                          << "North"
                                          << "Process" << false << false << "P1";
        QTest::newRow("marked ones") << ""
                                     << "*"
                                     << "*" << true << false << "P1 P3 P4";
        QTest::newRow("unreliable ones") << ""
                                         << "*"
                                         << "*" << false << true << "P3 P4";
        QTest::newRow("unreliable ones of an area") << ""
                                                    << "*"
                                                    << "Process" << false << true << "P3";
    }

    void filters()
    {
        QFETCH(QString, searched);
        QFETCH(QString, station);
        QFETCH(QString, area);
        QFETCH(bool, isMarkedOnly);
        QFETCH(bool, isUnreliableOnly);
        QFETCH(QString, expected);
        SummaryPlant plant;
        addFour(plant);
        Shown shown(plant);
        SummaryFilter filter;
        filter.text = searched;
        if (station != text("*"))
            filter.station = station;
        if (area != text("*"))
            filter.area = area;
        filter.isMarkedOnly = isMarkedOnly;
        filter.isUnreliableOnly = isUnreliableOnly;
        shown.filter(filter);
        QCOMPARE(shown.column(), expected);
    }

    void aValueIsShownSoonAndMovesItsRowLater()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2, 3});
        Shown shown(plant);
        shown.sort(Column::Value);
        QSignalSpy told(&shown.model, &QAbstractItemModel::dataChanged);
        QSignalSpy moved(&shown.model, &SummaryModel::arranged);
        QElapsedTimer timer;
        timer.start();
        plant.sample(SummaryPlant::analog(1), 9);
        shown.model.noteChanged({SummaryPlant::analog(1)});
        QCOMPARE(shown.cell(1, Column::Value).toString(), text("9"));
        QVERIFY(told.wait());
        QCOMPARE(told[0][0].toModelIndex(), shown.model.index(1, 0));
        QCOMPARE(told[0][1].toModelIndex(), shown.model.index(1, 16));
        QCOMPARE(shown.column(), text("A0 A1 A2"));
        QVERIFY(moved.wait());
        QVERIFY2(timer.elapsed() >= SummaryModel::orderMs / 2, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(shown.column(), text("A0 A2 A1"));
        QCOMPARE(moved.size(), 1);
    }

    void changesWithoutAnEndMoveRowsOnceInAWhile()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2, 3});
        Shown shown(plant);
        shown.sort(Column::Value);
        double value = 3;
        // Asked about every 50 ms, sooner than rows move.
        QTRY_VERIFY((plant.passSeconds(1), plant.sample(SummaryPlant::analog(0), ++value),
                     shown.model.noteChanged({SummaryPlant::analog(0)}), shown.column() == text("A1 A2 A0")));
        QCOMPARE(shown.model.figures().merges, Q_INT64_C(1));
    }

    void valuesMoveNothingThatIsSortedByNames()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2, 3});
        Shown shown(plant);
        shown.sort(Column::Name);
        plant.sample(SummaryPlant::analog(1), 9);
        shown.model.noteChanged({SummaryPlant::analog(1)});
        shown.model.applyChanges();
        QCOMPARE(shown.model.figures().merges, Q_INT64_C(0));
    }

    void pointsComeAndGoByTheirMarks()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2, 3});
        Shown shown(plant);
        SummaryFilter filter;
        filter.isUnreliableOnly = true;
        shown.filter(filter);
        QCOMPARE(shown.column(), QString());
        plant.sample(SummaryPlant::analog(2), 3, ValueMark::Stale);
        plant.sample(SummaryPlant::analog(1), 2, ValueMark::Invalid);
        shown.model.noteChanged({SummaryPlant::analog(2), SummaryPlant::analog(1)});
        shown.model.applyChanges();
        QCOMPARE(shown.column(), text("A1 A2"));
        plant.sample(SummaryPlant::analog(1), 2);
        shown.model.noteChanged({SummaryPlant::analog(1)});
        shown.model.applyChanges();
        QCOMPARE(shown.column(), text("A2"));
    }

    void whatIsNoPointIsLeftOut()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2});
        plant.add({Korvane::ScadaObjectType::RtuObject, SummaryPlant::analog(0).id}, text("UNIT"));
        Shown shown(plant);
        shown.sort(Column::Value);
        shown.model.noteChanged(
            {SummaryPlant::analog(9), {Korvane::ScadaObjectType::RtuObject, SummaryPlant::analog(0).id}});
        shown.model.applyChanges();
        QCOMPARE(shown.model.figures().merges, Q_INT64_C(0));
    }

    void aHeldOrderWaits()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2});
        Shown shown(plant);
        shown.sort(Column::Value);
        shown.model.setOrderHeld(true);
        plant.sample(SummaryPlant::analog(0), 3);
        shown.model.noteChanged({SummaryPlant::analog(0)});
        shown.model.applyChanges();
        QCOMPARE(shown.column(), text("A0 A1"));
        shown.model.setOrderHeld(false);
        QTRY_COMPARE(shown.column(), text("A1 A0"));
    }

    void aMeanMovesItsRowOnDemand()
    {
        SummaryPlant plant;
        plant.addWithValues({0, 4});
        plant.passSeconds(10);
        plant.sample(SummaryPlant::analog(0), 10);
        plant.passSeconds(1);
        Shown shown(plant);
        shown.sort(Column::TodayMean);
        QCOMPARE(shown.column(), text("A0 A1"));
        plant.passSeconds(100);
        shown.model.applyChanges();
        QCOMPARE(shown.column(), text("A0 A1"));
        shown.model.refresh();
        shown.settle();
        QCOMPARE(shown.column(), text("A1 A0"));
    }

    void aDragCarriesThePoint()
    {
        SummaryPlant plant;
        RuntimeDatabase::Object object = SummaryPlant::object(SummaryPlant::analog(3), text("P1.FLOW"));
        object.description = text("Flow");
        plant.add(object);
        Shown shown(plant);
        QVERIFY(shown.model.flags(shown.model.index(0, 0)) & Qt::ItemIsDragEnabled);
        const std::unique_ptr<QMimeData> data(shown.model.mimeData({shown.model.index(0, 2), shown.model.index(0, 1)}));
        const auto* point = qobject_cast<const KVPointMimeData*>(data.get());
        QVERIFY(point);
        QCOMPARE(point->getData().type, Korvane::ScadaObjectType::AnalogPoint);
        QCOMPARE(point->getData().number, SummaryPlant::analog(3).id);
        QCOMPARE(point->getData().tag, text("P1.FLOW"));
        QCOMPARE(point->getData().description, text("Flow"));
        QCOMPARE(data->text(), text("P1.FLOW"));
        QVERIFY(shown.model.mimeTypes().contains(KVPointMimeData::format()));
        QVERIFY(!shown.model.mimeData({}));
    }

    /// Anything happens in any order; rows, and indexes that are held, must be where they belong.
    void whateverHappensIsShown()
    {
        SummaryPlant plant;
        QRandomGenerator random(5);
        addMany(plant, 300);
        Shown shown(plant);
        const QAbstractItemModelTester tester(&shown.model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        SummaryFilter filter;
        int column = -1;
        Qt::SortOrder order = Qt::AscendingOrder;
        for (int round = 0; round < 200; ++round) {
            std::vector<std::pair<QPersistentModelIndex, ObjectKey>> held;
            for (int row = 0; row < shown.model.rowCount(); row += 7)
                held.emplace_back(shown.model.index(row, row % 5), shown.model.point(row));
            change(plant, shown.model, random);
            if (random.bounded(10) == 0) {
                const int columns[] = {-1, Column::Name, Column::Value, Column::Marks, Column::TodayMaximum};
                column = columns[random.bounded(5)];
                order = random.bounded(2) == 0 ? Qt::AscendingOrder : Qt::DescendingOrder;
                shown.model.sort(column, order); // what comes meanwhile counts too
                QCoreApplication::processEvents();
                change(plant, shown.model, random);
            }
            if (random.bounded(10) == 0) {
                filter.text = random.bounded(2) == 0 ? QString() : QString::number(random.bounded(10));
                filter.isMarkedOnly = random.bounded(2) == 0;
                filter.isUnreliableOnly = random.bounded(3) == 0;
                filter.area = random.bounded(3) == 0 ? std::optional<QString>(text("South")) : std::nullopt;
                shown.model.setFilter(filter);
                change(plant, shown.model, random);
            }
            shown.settle();
            shown.model.applyChanges();
            const std::vector<ObjectKey> expected = plainList(shown.model, filter, column, order);
            QCOMPARE(shown.model.shownPoints(), expected);
            for (const auto& [index, point] : held) {
                QCOMPARE(index.isValid(), std::find(expected.begin(), expected.end(), point) != expected.end());
                if (index.isValid())
                    QCOMPARE(shown.model.point(index.row()), point);
            }
        }
        QVERIFY(shown.model.figures().merges > 50);
    }

private:
    static void addFour(SummaryPlant& plant)
    {
        const char* const descriptions[] = {"Flow", "Current", "Level", ""};
        const char* const stations[] = {"North", "North", "South", ""};
        const char* const areas[] = {"Process", "Electrical", "Process", ""};
        const qint32 qualities[] = {ValueMark::Estimated, 0, ValueMark::Stale, ValueMark::CommunicationFailed};
        for (int number = 0; number < 4; ++number) {
            RuntimeDatabase::Object object =
                SummaryPlant::object(SummaryPlant::analog(number), QStringLiteral("P%1").arg(number + 1));
            object.description = text(descriptions[number]);
            object.station = text(stations[number]);
            object.area = text(areas[number]);
            plant.add(object);
            plant.sample(SummaryPlant::analog(number), 1, qualities[number]);
        }
    }
    static void addMany(SummaryPlant& plant, int count)
    {
        for (int number = 0; number < count; ++number) {
            RuntimeDatabase::Object object =
                SummaryPlant::object(SummaryPlant::analog(number), QStringLiteral("P%1").arg(number * 37 % count));
            object.area = number % 3 == 0 ? text("South") : QString();
            object.high = 7;
            plant.add(object);
        }
    }
    /// Samples for a few of the points.
    static void change(SummaryPlant& plant, SummaryModel& model, QRandomGenerator& random)
    {
        plant.passSeconds(1);
        std::vector<ObjectKey> changed;
        const auto most = static_cast<int>(plant.database.count(Korvane::ScadaObjectType::Point));
        for (int count = random.bounded(20); count > 0; --count) {
            const qint32 qualities[] = {0, 0, ValueMark::Stale, ValueMark::Invalid, ValueMark::Estimated};
            changed.push_back(SummaryPlant::analog(random.bounded(most)));
            plant.sample(changed.back(), random.bounded(10), qualities[random.bounded(5)]);
        }
        model.noteChanged(changed);
    }
};

QTEST_MAIN(tst_SummaryModel)
#include "tst_summarymodel.moc"
