#include "host/actions/canvasactionmanager.h"
#include "host/actions/colouraction.h"
#include "host/actions/numberaction.h"
#include "host/canvas/page.h"
#include "host/inspection/markstext.h"
#include "host/inspection/pointreport.h"
#include "host/inspection/shapeexplanation.h"
#include "host/inspection/tagtablemodel.h"
#include "host/runtime/runtimedatabase.h"
#include "host/shapes/readout.h"
#include "host/shapes/rectangle.h"
#include "platform/data/valuemarks.h"
#include "tests/support/testaction.h"
#include "tests/support/testhub.h"
#include "tests/support/testproperties.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

using Korvane::LogicType;
using Korvane::OpType;
using Korvane::ScadaObjectType;

namespace {

constexpr qint64 begin = 1'600'000'000'000; // 2020-09-13 12:26:40 UTC

/// A page on which every time is the test's.
struct TestPage
{
    TestPage()
    {
        add({ScadaObjectType::AnalogPoint, 200001, QStringLiteral("P0")});
        add({ScadaObjectType::AnalogPoint, 200002, QStringLiteral("P1")});
        RuntimeDatabase::Object valve{ScadaObjectType::DigitalPoint, 100001, QStringLiteral("D0")};
        valve.states = QStringList{QStringLiteral("Closed"), QStringLiteral("Open")};
        add(valve);
        RuntimeDatabase::Object pressure{ScadaObjectType::AnalogPoint, 200003, QStringLiteral("P2")};
        pressure.unit = QStringLiteral("bar");
        pressure.decimals = 2;
        pressure.high = 15;
        add(pressure);
        database.setTimeZone(QTimeZone::utc());
        database.setClock([this] { return now; });
        hub.setScadaRuntime(&database);
        hub.setAppPropertyManager(&properties);
        page.canvas = std::make_unique<Canvas>(QStringLiteral("plant"));
        layer = &page.canvas->addLayer(QStringLiteral("values"));
        auto made = std::make_unique<CanvasActionManager>(page.canvas.get(), &hub);
        manager = made.get();
        page.actions = std::move(made);
    }

    void add(const RuntimeDatabase::Object& object)
    {
        const auto added = database.add(object);
        QVERIFY2(added, added ? "" : qPrintable(added.error()));
    }
    template <typename ShapeType>
    Shape& addShape(const QString& name)
    {
        Shape& shape = page.canvas->addShape(*layer, std::make_unique<ShapeType>());
        shape.setName(name);
        return shape;
    }
    TagAction& addNumber(Shape& shape, const QStringList& tags)
    {
        auto* action = new NumberAction(&shape);
        action->setTags(tags);
        manager->addAction(action);
        return *action;
    }
    static ObjectKey keyOf(qint32 id)
    {
        return {id < 200000 ? ScadaObjectType::DigitalPoint : ScadaObjectType::AnalogPoint, id};
    }
    void take(qint32 id, double value, qint32 quality = 0, qint64 timeMs = begin)
    {
        QVERIFY(database.takeSample({keyOf(id), timeMs, value, quality}));
        MwDataDepartment batch;
        batch.points.emplace(static_cast<quint32>(id), database.presentRecord(keyOf(id)));
        manager->takeBatch(batch);
    }
    QString explain(const Shape& shape) const { return explainShape(page, shape, database); }

    qint64 now = begin;
    RuntimeDatabase database;
    TestProperties properties;
    TestHub hub;
    Page page;
    Layer* layer = nullptr;
    CanvasActionManager* manager = nullptr;
};

ActionRule ruleOf(const std::vector<ConditionData>& conditions, const QVariantMap& set)
{
    ActionRule rule;
    for (const ConditionData& data : conditions)
        rule.conditions.emplace_back(data);
    rule.set = set;
    return rule;
}

QString lines(const std::vector<const char*>& texts)
{
    QStringList all;
    for (const char* text : texts)
        all.append(QString::fromLatin1(text));
    return all.join(QLatin1Char('\n'));
}

} // namespace

class tst_Inspection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void marksInWords_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<int>("limit");
        QTest::addColumn<int>("quality");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, int tag, int limit, int quality, const char* text) {
            QTest::newRow(name) << tag << limit << quality << QString::fromLatin1(text);
        };
        row("no mark is good", 0, 0, 0, "good");
        row("a mark that is not known is no word", 0x100, 0x100, 0x100, "good");
        row("quality 1", 0, 0, 0x01, "invalid");
        row("quality 2", 0, 0, 0x02, "substituted");
        row("quality 4", 0, 0, 0x04, "stale");
        row("quality 8", 0, 0, 0x08, "communication failed");
        row("quality 16", 0, 0, 0x10, "estimated");
        row("quality 32", 0, 0, 0x20, "out of range");
        row("quality 64", 0, 0, 0x40, "oscillating");
        row("quality 128", 0, 0, 0x80, "test");
        row("limit 1", 0, 0x01, 0, "below low");
        row("limit 2", 0, 0x02, 0, "above high");
        row("limit 4", 0, 0x04, 0, "below low-low");
        row("limit 8", 0, 0x08, 0, "above high-high");
        row("limit 16", 0, 0x10, 0, "abnormal");
        row("tag 1", 0x01, 0, 0, "control inhibited");
        row("tag 2", 0x02, 0, 0, "alarm inhibited");
        row("tag 4", 0x04, 0, 0, "scan inhibited");
        row("tag 8", 0x08, 0, 0, "information tag");
        row("marks of all three, the quality's first", 0x01, 0x0a, 0x05,
            "invalid, stale, above high-high, above high, control inhibited");
    }
    void marksInWords()
    {
        QFETCH(int, tag);
        QFETCH(int, limit);
        QFETCH(int, quality);
        QFETCH(QString, text);
        QCOMPARE(marksText(testRecord(1, tag, limit, quality)), text);
    }

    void aRecordWithoutMarksIsGood() { QCOMPARE(marksText(QuorixData()), QStringLiteral("good")); }

    void aShapeWithoutBindings()
    {
        TestPage test;
        const Shape& shape = test.addShape<Rectangle>(QStringLiteral("frame"));
        test.manager->open(&test.database);
        QCOMPARE(test.explain(shape), lines({"Rectangle \"frame\" on page \"plant\"", "layer \"values\"",
                                             "no bindings: it looks as it was drawn"}));
    }

    void aShapeOfNoLayer()
    {
        const TestPage test;
        ReadOut shape;
        QCOMPARE(test.explain(shape),
                 lines({"ReadOut \"\" on page \"plant\"", "no bindings: it looks as it was drawn"}));
    }

    void aLayerThatIsSwitchedOff()
    {
        TestPage test;
        const Shape& shape = test.addShape<Rectangle>(QStringLiteral("frame"));
        const auto layer = [&] { return test.explain(shape).split(QLatin1Char('\n')).at(1); };
        test.page.canvas->setMarksShown(*test.layer, false);
        QCOMPARE(layer(), QStringLiteral("layer \"values\", whose quality marks are switched off"));
        test.page.canvas->setLayerVisible(*test.layer, false);
        QCOMPARE(layer(), QStringLiteral("layer \"values\", which is switched off"));
    }

    void aValueWithItsTimeAndMarks()
    {
        TestPage test;
        Shape& shape = test.addShape<ReadOut>(QStringLiteral("flow"));
        test.addNumber(shape, {QStringLiteral("P2")});
        test.manager->open(&test.database);
        QCOMPARE(test.explain(shape),
                 lines({"ReadOut \"flow\" on page \"plant\"", "layer \"values\"", "binding 1: Number",
                        "    tag P2 (id 200003) = (no value yet), time (none), marks invalid",
                        "    not changed since the page was opened"}));
        test.take(200003, 12.5);
        QCOMPARE(test.explain(shape),
                 lines({"ReadOut \"flow\" on page \"plant\"", "layer \"values\"", "binding 1: Number",
                        "    tag P2 (id 200003) = 12.5, time 2020-09-13T12:26:40.000Z, marks good",
                        "    last changed by batch 1 at 1970-01-01T00:00:00.000Z, 2 times in all"}));
        test.take(200001, 1); // another point's
        test.take(200003, 15.5, ValueMark::Substituted, begin + 1250);
        QCOMPARE(test.explain(shape),
                 lines({"ReadOut \"flow\" on page \"plant\"", "layer \"values\"", "binding 1: Number",
                        "    tag P2 (id 200003) = 15.5, time 2020-09-13T12:26:41.250Z, marks substituted, above high",
                        "    last changed by batch 3 at 1970-01-01T00:00:00.000Z, 3 times in all"}));
    }

    void aSourceThatHasFailed()
    {
        TestPage test;
        Shape& shape = test.addShape<Rectangle>(QStringLiteral("frame"));
        auto* action = new ColourAction(&shape);
        action->setRules({ruleOf({{QStringLiteral("P0"), QStringLiteral("10"), OpType::Greater}},
                                 {{QStringLiteral("FillColor"), QStringLiteral("red")}})});
        test.manager->addAction(action);
        test.manager->open(&test.database);
        test.take(200001, 11);
        QCOMPARE(test.explain(shape),
                 lines({"Rectangle \"frame\" on page \"plant\"", "layer \"values\"", "binding 1: Colour",
                        "    tag P0 (id 200001) = 11, time 2020-09-13T12:26:40.000Z, marks good", "    constant 10",
                        "    condition that holds: P0 > 10",
                        "    last changed by batch 1 at 1970-01-01T00:00:00.000Z, 2 times in all"}));
        test.manager->takeBatch({});
        QCOMPARE(test.explain(shape),
                 lines({"Rectangle \"frame\" on page \"plant\"", "layer \"values\"",
                        "the data source has failed: values are the last ones, conditions are undone",
                        "binding 1: Colour", "    tag P0 (id 200001) = 11, time 2020-09-13T12:26:40.000Z, marks good",
                        "    constant 10", "    conditions are undone: their source has failed",
                        "    last changed by batch 2 at 1970-01-01T00:00:00.000Z, 3 times in all"}));
    }

    void theConditionThatHoldsIsNamedAsWritten()
    {
        TestPage test;
        Shape& shape = test.addShape<Rectangle>(QStringLiteral("frame"));
        auto* action = new ColourAction(&shape);
        action->setRules({ruleOf({{QStringLiteral("P0"), QStringLiteral("100"), OpType::Greater}}, {}),
                          ruleOf({{QStringLiteral("P2:HighLimit"), QStringLiteral("15"), OpType::Equal, LogicType::And},
                                  {QStringLiteral("P0"), QStringLiteral("P1"), OpType::NotEqual}},
                                 {{QStringLiteral("FillColor"), QStringLiteral("red")}})});
        test.manager->addAction(action);
        test.manager->open(&test.database);
        test.take(200001, 1);
        test.take(200002, 2);
        test.take(200003, 3);
        const QStringList told = test.explain(shape).split(QLatin1Char('\n'));
        QVERIFY(told.contains(QStringLiteral("    condition that holds: P2:HighLimit == 15 && P0 != P1")));
        QVERIFY(told.contains(
            QStringLiteral("    tag P2:HighLimit (id 200003) = 15, time 2020-09-13T12:26:40.000Z, marks good")));
        QVERIFY(told.contains(QStringLiteral("    tag P1 (id 200002) = 2, time 2020-09-13T12:26:40.000Z, marks good")));
    }

    void whateverATagCanName()
    {
        TestPage test;
        test.properties.values.insert(QStringLiteral("shift"), QStringLiteral("early"));
        Shape& shape = test.addShape<ReadOut>(QStringLiteral("mixed"));
        test.addNumber(shape, {QStringLiteral("5"), QStringLiteral("@::shift"), QStringLiteral("@::crew"),
                               QStringLiteral("no such point"), QStringLiteral("#100001")});
        test.manager->open(&test.database);
        test.take(200001, 1); // properties come with a batch
        test.take(100001, 1);
        QStringList told = test.explain(shape).split(QLatin1Char('\n'));
        QCOMPARE(told.mid(3, 5).join(QLatin1Char('\n')),
                 lines({"    constant 5", "    property shift = early", "    property crew = (no value yet)",
                        "    tag no such point: names no known object",
                        "    tag #100001 (id 100001) = 1, time 2020-09-13T12:26:40.000Z, marks good"}));
    }

    void everyBindingIsNumbered()
    {
        TestPage test;
        Shape& shape = test.addShape<ReadOut>(QStringLiteral("flow"));
        test.addNumber(shape, {QStringLiteral("P0")});
        auto* foreign = new TestAction(&shape);
        foreign->targets.push_back(ObjectTarget::fromTagString(QStringLiteral("P1")));
        test.manager->addAction(foreign);
        test.manager->open(&test.database);
        QCOMPARE(test.explain(shape),
                 lines({"ReadOut \"flow\" on page \"plant\"", "layer \"values\"", "binding 1: Number",
                        "    tag P0 (id 200001) = (no value yet), time (none), marks invalid",
                        "    not changed since the page was opened", "binding 2: Test",
                        "    tag P1 (id 200002) = (no value yet), time (none), marks invalid",
                        "    not changed since the page was opened"}));
    }

    void aPointsRow_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QList<double>>("values"); // ten seconds each
        QTest::addColumn<int>("quality");
        QTest::addColumn<QStringList>("row");
        using Values = QList<double>;
        const auto cells = [](const char* text) { return QString::fromLatin1(text).split(QLatin1Char('|')); };
        QTest::newRow("an analog point that was never seen")
            << 200003 << Values{} << 0 << cells("P2|-|bar|invalid|-|min -, mean -, max -");
        QTest::newRow("a digital point that was never seen")
            << 100001 << Values{} << 0 << cells("D0|-||invalid|-|on 0x -, off 0x -");
        QTest::newRow("values have the point's decimals")
            << 200003 << Values{10, 20} << 0
            << cells("P2|20.00|bar|above high|2020-09-13T12:26:50.000Z|min 10.00, mean 15.00, max 20.00");
        QTest::newRow("and as many as needed where it has none")
            << 200001 << Values{0.25, 1} << 0
            << cells("P0|1||good|2020-09-13T12:26:50.000Z|min 0.25, mean 0.625, max 1");
        QTest::newRow("a state is named")
            << 100001 << Values{0, 1, 0} << 0
            << cells("D0|Closed||good|2020-09-13T12:27:00.000Z|on 1x 0:00:10, off 1x 0:00:20");
        QTest::newRow("a state without a name is a number")
            << 100001 << Values{2} << 0 << cells("D0|2||good|2020-09-13T12:26:40.000Z|on 0x 0:00:10, off 0x 0:00:00");
        QTest::newRow("an invalid value is shown and not counted")
            << 200001 << Values{7, 8} << int(ValueMark::Invalid)
            << cells("P0|8||invalid|2020-09-13T12:26:50.000Z|min 7, mean 7, max 7");
    }
    void aPointsRow()
    {
        QFETCH(int, id);
        QFETCH(QList<double>, values);
        QFETCH(int, quality); // of the last value
        QFETCH(QStringList, row);
        TestPage test;
        for (int place = 0; place < values.size(); ++place) {
            const bool isLast = place + 1 == values.size();
            test.take(id, values.at(place), isLast ? quality : 0, begin + place * 10'000);
            test.now = begin + (place + 1) * 10'000;
        }
        QStringList found = PointReport::row(test.database, TestPage::keyOf(id));
        QCOMPARE(found, row);
        QCOMPARE(row.size(), PointReport::header().size());
    }

    void longDurationsAreHours()
    {
        TestPage test;
        test.take(100001, 1, 0, begin);
        test.take(100001, 0, 0, begin + 3'600'000 * 11 + 65'000);
        test.now = begin + 3'600'000 * 11 + 65'999; // 23:28, the same day
        QCOMPARE(PointReport::row(test.database, TestPage::keyOf(100001)).last(),
                 QStringLiteral("on 0x 11:01:05, off 1x 0:00:00"));
    }

    void anUnknownPointHasNoRow()
    {
        const TestPage test;
        QCOMPARE(PointReport::row(test.database, TestPage::keyOf(299999)), QStringList());
    }

    void theReportHasColumnsOfEvenWidth()
    {
        RuntimeDatabase database;
        qint64 now = begin;
        database.setTimeZone(QTimeZone::utc());
        database.setClock([&now] { return now; });
        RuntimeDatabase::Object flow{ScadaObjectType::AnalogPoint, 200001, QStringLiteral("P101.FLOW")};
        flow.unit = QStringLiteral("l/min");
        flow.decimals = 1;
        QVERIFY(database.add(flow));
        QVERIFY(database.add({ScadaObjectType::RtuObject, 7, QStringLiteral("UNIT")})); // no point
        QVERIFY(database.add({ScadaObjectType::DigitalPoint, 100001, QStringLiteral("V1")}));
        QVERIFY(database.takeSample({TestPage::keyOf(200001), begin, 12.34}));
        now += 1000;
        QCOMPARE(
            PointReport::text(database),
            QStringLiteral("name       value  unit   quality  time                      today\n"
                           "P101.FLOW  12.3   l/min  good     2020-09-13T12:26:40.000Z  min 12.3, mean 12.3, max 12.3\n"
                           "V1         -             invalid  -                         on 0x -, off 0x -\n"));
    }

    void withoutPointsTheReportIsItsHeader()
    {
        QCOMPARE(PointReport::text(RuntimeDatabase()), QStringLiteral("name  value  unit  quality  time  today\n"));
    }

    void everyTagOfAPageIsARow()
    {
        TestPage test;
        test.properties.values.insert(QStringLiteral("shift"), QStringLiteral("early"));
        Shape& flow = test.addShape<ReadOut>(QStringLiteral("flow"));
        test.addNumber(flow, {QStringLiteral("P2"), QStringLiteral("5"), QString()});
        Shape& frame = test.addShape<Rectangle>(QStringLiteral("frame"));
        auto* colour = new ColourAction(&frame);
        colour->setRules({ruleOf({{QStringLiteral("P2:HighLimit"), QStringLiteral("10"), OpType::Greater}}, {})});
        test.manager->addAction(colour);
        test.addNumber(frame, {QStringLiteral("@::shift"), QStringLiteral("no such point")});
        test.manager->open(&test.database);
        test.take(200003, 15.5);

        TagTableModel model(test.page, test.database);
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 4); // constants and what is empty are no tags
        QCOMPARE(model.columnCount(), 8);
        QCOMPARE(model.rowCount(model.index(0, 0)), 0);
        QCOMPARE(model.columnCount(model.index(0, 0)), 0);
        QStringList titles;
        for (int column = 0; column < model.columnCount(); ++column)
            titles.append(model.headerData(column, Qt::Horizontal).toString());
        QCOMPARE(titles.join(QLatin1Char('|')), QStringLiteral("Tag|Id|Field|Value|Quality|Time|Shape|Binding"));
        QVERIFY(!model.headerData(8, Qt::Horizontal).isValid());
        QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::DecorationRole).isValid());
        const auto row = [&model](int number) {
            QStringList cells;
            for (int column = 0; column < model.columnCount(); ++column)
                cells.append(model.index(number, column).data().toString());
            return cells.join(QLatin1Char('|'));
        };
        QCOMPARE(row(0), QStringLiteral("P2|200003||15.5|above high|2020-09-13T12:26:40.000Z|flow|Number"));
        QCOMPARE(row(1), QStringLiteral("P2|200003|HighLimit|15|above high|2020-09-13T12:26:40.000Z|frame|Colour"));
        QCOMPARE(row(2), QStringLiteral("shift|||early|||frame|Number"));
        QCOMPARE(row(3), QStringLiteral("no such point|||-|names no known object||frame|Number"));
        QCOMPARE(model.index(0, TagTableModel::Value).data(Qt::ToolTipRole), QVariant(QStringLiteral("15.5")));
        QVERIFY(!model.index(0, TagTableModel::Value).data(Qt::DecorationRole).isValid());
        QVERIFY(!model.data({}).isValid());

        test.take(200003, 1);
        QCOMPARE(row(0), QStringLiteral("P2|200003||1|good|2020-09-13T12:26:40.000Z|flow|Number"));
    }

    void whatChangesIsShownAnew()
    {
        TestPage test;
        Shape& flow = test.addShape<ReadOut>(QStringLiteral("flow"));
        test.addNumber(flow, {QStringLiteral("P0"), QStringLiteral("P1")});
        test.manager->open(&test.database);
        TagTableModel model(test.page, test.database);
        QSignalSpy changed(&model, &TagTableModel::dataChanged);
        model.refresh();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toModelIndex(), model.index(0, TagTableModel::Value));
        QCOMPARE(changed[0][1].toModelIndex(), model.index(1, TagTableModel::Time));
    }

    void aPageWithoutTagsHasNoRows()
    {
        TestPage test;
        test.manager->open(&test.database);
        TagTableModel model(test.page, test.database);
        QSignalSpy changed(&model, &TagTableModel::dataChanged);
        QCOMPARE(model.rowCount(), 0);
        model.refresh();
        QCOMPARE(changed.count(), 0);
    }
};

QTEST_MAIN(tst_Inspection)
#include "tst_inspection.moc"
