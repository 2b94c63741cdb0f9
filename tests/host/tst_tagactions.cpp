#include "host/actions/actioneditor.h"
#include "host/actions/canvasactionmanager.h"
#include "host/actions/colouraction.h"
#include "host/actions/levelaction.h"
#include "host/actions/stateaction.h"
#include "host/actions/tagactionfactory.h"
#include "host/actions/textaction.h"
#include "host/actions/trendaction.h"
#include "host/actions/unloadedaction.h"
#include "host/canvas/canvas.h"
#include "host/runtime/runtimedatabase.h"
#include "host/shapes/shapefactory.h"
#include "host/shapes/trend.h"
#include "platform/data/dataserviceinterface.h"
#include "platform/data/scadatagactionstream.h"
#include "platform/data/valuemarks.h"
#include "tests/support/drawnshape.h"
#include "tests/support/testaction.h"
#include "tests/support/testhub.h"
#include "tests/support/testproperties.h"
#include "tests/support/testshape.h"

#include <QCheckBox>
#include <QLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QtTest>

#include <limits>

using Korvane::LogicType;
using Korvane::OpType;
using Korvane::ScadaObjectType;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr qint64 begin = 1'600'000'000'000;

/// A data service whose every hour had the mean 7.5.
class TestHistory : public DataServiceInterface
{
public:
    bool queryUserAccounts(const QString&, QList<EUserAccount>&) override { return false; }
    QVariant historyValue(ObjectKey, DataCode::DataField field) override
    {
        return field == DataCode::DataField::PastMean ? QVariant(7.5) : QVariant();
    }
};

/// A page with the points P0 to P3 and the unit UNIT.
struct TestPage
{
    TestPage()
    {
        for (int number = 0; number < 4; ++number) {
            const auto added =
                database.add({ScadaObjectType::AnalogPoint, 200001 + number, QStringLiteral("P%1").arg(number)});
            Q_ASSERT(added);
        }
        const auto unit = database.add({ScadaObjectType::RtuObject, 7, QStringLiteral("UNIT")});
        Q_ASSERT(unit);
        hub.setScadaRuntime(&database);
        hub.setAppPropertyManager(&properties);
        hub.setDataServiceInterface(&history);
        manager = std::make_unique<CanvasActionManager>(&canvas, &hub);
        layer = &canvas.addLayer(QStringLiteral("layer"));
    }

    Shape& add(const QString& shapeClass) { return canvas.addShape(*layer, ShapeFactory::create(shapeClass)); }
    TagAction* add(int type, Shape& shape)
    {
        TagAction* action = TagActionFactory::make(type, &shape).release();
        manager->addAction(action);
        return action;
    }
    /// Values of P0, P1 and so on.
    void take(std::initializer_list<std::pair<int, double>> values, qint32 quality = 0)
    {
        MwDataDepartment batch;
        for (const auto& [number, value] : values)
            batch.points.emplace(static_cast<quint32>(200001 + number), testRecord(value, 0, 0, quality));
        manager->takeBatch(batch);
    }
    void takeAt(qint64 timeMs, int number, double value, qint32 quality = 0)
    {
        MwDataDepartment batch;
        QuorixData record = testRecord(value, 0, 0, quality);
        record.setMember("time", QuorixValue(QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC)));
        batch.points.emplace(static_cast<quint32>(200001 + number), record);
        manager->takeBatch(batch);
    }
    /// Any value at all, as the property "a" or "b".
    void setProperty(const QString& name, const QVariant& value)
    {
        properties.values.insert(name, value);
        manager->takeProperty(name, value);
    }

    RuntimeDatabase database;
    TestProperties properties;
    TestHistory history;
    TestHub hub;
    Canvas canvas{QStringLiteral("page")};
    Layer* layer = nullptr;
    std::unique_ptr<CanvasActionManager> manager;
};

ActionRule ruleOf(const std::vector<ConditionData>& conditions, const QVariantMap& set)
{
    ActionRule rule;
    for (const ConditionData& data : conditions)
        rule.conditions.emplace_back(data);
    rule.set = set;
    return rule;
}

ActionRule above(const QString& tag, const QString& bound, const QVariantMap& set)
{
    return ruleOf({{tag, bound, OpType::Greater}}, set);
}

QStringList taggedTexts()
{
    return {QStringLiteral("P0"),           QStringLiteral("P1:HighLimit"),
            QStringLiteral("P0:PastMean"),  QStringLiteral("@R::UNIT:CommState"),
            QStringLiteral("@::speed"),     QStringLiteral("5"),
            QStringLiteral("no such point")};
}

std::vector<ActionRule> someRules()
{
    return {ruleOf({{QStringLiteral("P0:PastMean"), QStringLiteral("10"), OpType::GreaterOrEqual, LogicType::And},
                    {QStringLiteral("P1"), QStringLiteral("-2.5"), OpType::Less}},
                   {{QStringLiteral("FillColor"), QStringLiteral("#ff0000")}, {QStringLiteral("LineWidth"), 3}}),
            above(QStringLiteral("@R::UNIT:CommState"), QStringLiteral("0"), {{QStringLiteral("Blink"), true}})};
}

/// Settings of a kind other than it begins with; the kinds that are left out have none.
QVariantMap otherSettings(int type)
{
    switch (type) {
    case TagAction::Text:
        return {{QStringLiteral("Property"), QStringLiteral("ToolTip")},
                {QStringLiteral("Format"), QStringLiteral("<%1>")},
                {QStringLiteral("Decimals"), 3},
                {QStringLiteral("Texts"), QStringList({QStringLiteral("Closed"), QStringLiteral("a|b")})}};
    case TagAction::Number:
        return {{QStringLiteral("Property"), QStringLiteral("Rotation")},
                {QStringLiteral("Factor"), 2.5},
                {QStringLiteral("Offset"), -1.0}};
    case TagAction::Level:
        return {{QStringLiteral("Low"), 5.5}, {QStringLiteral("High"), -20.0}};
    case TagAction::Visibility:
        return {{QStringLiteral("ShownWhenTrue"), false}};
    case TagAction::Rotation:
        return {{QStringLiteral("Low"), 1.5},
                {QStringLiteral("High"), 2.0},
                {QStringLiteral("LowAngle"), -45.0},
                {QStringLiteral("HighAngle"), 270.0}};
    case TagAction::Position:
        return {{QStringLiteral("Low"), 1.5},
                {QStringLiteral("High"), 2.0},
                {QStringLiteral("DistanceX"), 40.0},
                {QStringLiteral("DistanceY"), -0.5}};
    case TagAction::State:
        return {{QStringLiteral("Property"), QStringLiteral("LineWidth")}, {QStringLiteral("Offset"), -3}};
    default:
        return {};
    }
}

void give(TagAction& action, const QVariantMap& settings)
{
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
        QVERIFY2(action.setSetting(setting.key(), setting.value()), qPrintable(setting.key()));
}

/// An action with tags, rules and settings of its own.
std::unique_ptr<TagAction> wholeAction(int type, TesselInterface* shape = nullptr)
{
    auto action = TagActionFactory::make(type, shape);
    action->setTags(taggedTexts());
    action->setRules(someRules());
    give(*action, otherSettings(type));
    return action;
}

QByteArray bytesOf(const TagAction& action)
{
    ScadaTagActionStream stream;
    action.toStream(stream);
    return stream.data();
}

void read(TagAction& action, const QByteArray& bytes, QMap<QString, QVariant>& values)
{
    ScadaTagActionStream stream;
    stream.setData(bytes);
    action.fromStream(stream, values);
}

void addKinds()
{
    QTest::addColumn<int>("type");
    QTest::newRow("text") << int(TagAction::Text);
    QTest::newRow("number") << int(TagAction::Number);
    QTest::newRow("level") << int(TagAction::Level);
    QTest::newRow("colour") << int(TagAction::Colour);
    QTest::newRow("visibility") << int(TagAction::Visibility);
    QTest::newRow("rotation") << int(TagAction::Rotation);
    QTest::newRow("position") << int(TagAction::Position);
    QTest::newRow("state") << int(TagAction::State);
    QTest::newRow("trend") << int(TagAction::Trend);
}

} // namespace

class tst_TagActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aValueIsShown_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("shapeClass");
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<QVariantList>("values");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("shown");

        const auto row = [](const char* name, int type, const char* shapeClass, const QVariantMap& settings,
                            const QVariantList& values, const char* property, const QVariant& shown) {
            QTest::newRow(name) << type << QString::fromLatin1(shapeClass) << settings << values
                                << QString::fromLatin1(property) << shown;
        };
        const auto named = [](const char* name, const QVariant& value) {
            return QVariantMap{{QString::fromLatin1(name), value}};
        };
        const auto pair = [](const char* first, const QVariant& a, const char* second, const QVariant& b) {
            return QVariantMap{{QString::fromLatin1(first), a}, {QString::fromLatin1(second), b}};
        };
        const QString text = QStringLiteral("abc");

        const int number = TagAction::Number;
        row("a number is shown as it is", number, "ReadOut", {}, {12.5}, "Value", 12.5);
        row("a whole number is shown as one", number, "ReadOut", {}, {7}, "Value", 7.0);
        row("a number is shown times a factor plus an offset", number, "ReadOut", pair("Factor", 2, "Offset", -1),
            {12.5}, "Value", 24.0);
        row("a text that is a number counts as one", number, "ReadOut", {}, {QStringLiteral("12.5")}, "Value", 12.5);
        row("a switch counts as 1", number, "ReadOut", {}, {true}, "Value", 1.0);
        row("a text shows no number", number, "ReadOut", {}, {3.0, text}, "Value", QVariant());
        row("what is no number shows no number", number, "ReadOut", {}, {3.0, notANumber}, "Value", QVariant());
        row("an infinite number shows no number", number, "ReadOut", {}, {3.0, infinity}, "Value", QVariant());
        row("no value shows no number", number, "ReadOut", {}, {3.0, QVariant()}, "Value", QVariant());
        row("a result beyond all numbers shows no number", number, "ReadOut", named("Factor", 1e300), {1.0, 1e10},
            "Value", QVariant());
        row("without a value there is no number", number, "ReadOut", {}, {}, "Value", QVariant());
        row("a number sets another property", number, "ReadOut", named("Property", QStringLiteral("Rotation")), {30.0},
            "Rotation", 30.0);
        row("a property that the shape lacks changes nothing", number, "ReadOut",
            named("Property", QStringLiteral("Level")), {30.0}, "Value", QVariant());

        const int level = TagAction::Level;
        row("a quarter of the range is a quarter full", level, "Tank", {}, {25.0}, "Level", 0.25);
        row("a range of its own", level, "Tank", pair("Low", 50, "High", 150), {75.0}, "Level", 0.25);
        row("a range below zero", level, "Tank", pair("Low", -3, "High", -1), {-2.0}, "Level", 0.5);
        row("a range that runs downwards", level, "Tank", pair("Low", 100, "High", 0), {25.0}, "Level", 0.75);
        row("below the range is empty", level, "Tank", {}, {-0.001}, "Level", 0.0);
        row("above the range is full", level, "Tank", {}, {1e9}, "Level", 1.0);
        row("at the low value is empty", level, "Tank", pair("Low", 5, "High", 6), {5.0}, "Level", 0.0);
        row("what is no number shows no level", level, "Tank", {}, {25.0, notANumber}, "Level", QVariant());
        row("a text shows no level", level, "Tank", {}, {25.0, text}, "Level", QVariant());
        row("an empty range shows no level", level, "Tank", pair("Low", 5, "High", 5), {5.0, 6.0}, "Level", QVariant());
        row("without a value there is no level", level, "Tank", {}, {}, "Level", QVariant());

        const int rotation = TagAction::Rotation;
        row("half the range turns half way", rotation, "Rectangle", {}, {50.0}, "Rotation", 45.0);
        row("beyond the range it turns no further", rotation, "Rectangle", {}, {200.0}, "Rotation", 90.0);
        row("before the range it turns no further", rotation, "Rectangle", {}, {-5.0}, "Rotation", 0.0);
        row("angles of its own", rotation, "Rectangle", pair("LowAngle", -90, "HighAngle", 90), {25.0}, "Rotation",
            -45.0);
        row("angles that go back", rotation, "Rectangle", pair("LowAngle", 90, "HighAngle", 0), {100.0}, "Rotation",
            0.0);
        row("no number turns nothing", rotation, "Rectangle", {}, {50.0, notANumber}, "Rotation", 45.0);
        row("an empty range turns nothing", rotation, "Rectangle", pair("Low", 5, "High", 5), {5.0, 6.0}, "Rotation",
            0.0);

        const int position = TagAction::Position;
        const QVariantMap moved = pair("DistanceX", 100, "DistanceY", -50);
        row("at the low value a shape lies in its own place", position, "Rectangle", moved, {50.0, 0.0}, "Position",
            QPointF(10, 20));
        row("half the range moves it by half", position, "Rectangle", moved, {50.0}, "Position", QPointF(60, -5));
        row("beyond the range it moves no further", position, "Rectangle", moved, {300.0}, "Position",
            QPointF(110, -30));
        row("before the range it moves no further", position, "Rectangle", moved, {-300.0}, "Position",
            QPointF(10, 20));
        row("no number moves nothing", position, "Rectangle", moved, {50.0, notANumber}, "Position", QPointF(60, -5));
        row("an empty range moves nothing", position, "Rectangle",
            QVariantMap{{QStringLiteral("Low"), 1}, {QStringLiteral("High"), 1}, {QStringLiteral("DistanceX"), 9}},
            {1.0, 2.0}, "Position", QPointF(10, 20));

        const int state = TagAction::State;
        row("a value is a state", state, "Valve", {}, {1}, "State", 1);
        row("an offset is added to a state", state, "Valve", named("Offset", 1), {1.0}, "State", 2);
        row("a state is rounded down", state, "Valve", {}, {2.4}, "State", 2);
        row("a state is rounded up", state, "Valve", {}, {2.6}, "State", 3);
        row("a text that is a number is a state", state, "Valve", {}, {QStringLiteral("3")}, "State", 3);
        row("a text is an unknown state", state, "Valve", {}, {1, text}, "State", -1);
        row("no value any more is an unknown state", state, "Valve", {}, {1, QVariant()}, "State", -1);
        row("what is no number is an unknown state", state, "Valve", {}, {1, notANumber}, "State", -1);
        row("an infinite number is an unknown state", state, "Valve", {}, {1, infinity}, "State", -1);
        row("a million is an unknown state", state, "Valve", {}, {1, 1e6}, "State", -1);
        row("minus a million is an unknown state", state, "Valve", {}, {1, -1e6}, "State", -1);
        row("without a value the state is unknown", state, "Valve", {}, {}, "State", -1);
        row("a state beyond all whole numbers is unknown", state, "Valve",
            named("Offset", std::numeric_limits<int>::max()), {1}, "State", -1);
        row("a state sets another property", state, "Rectangle", named("Property", QStringLiteral("LineWidth")), {4},
            "LineWidth", 4);

        const int shownText = TagAction::Text;
        row("a text is shown", shownText, "Label", {}, {text}, "Text", text);
        row("no value shows the text that was drawn", shownText, "Label", {}, {text, QVariant()}, "Text",
            QStringLiteral("Text"));
        row("a text sets another property", shownText, "Label", named("Property", QStringLiteral("ToolTip")), {1},
            "ToolTip", QStringLiteral("1"));
    }
    void aValueIsShown()
    {
        QFETCH(int, type);
        QFETCH(QString, shapeClass);
        QFETCH(QVariantMap, settings);
        QFETCH(QVariantList, values);
        QFETCH(QString, property);
        QFETCH(QVariant, shown);
        TestPage page;
        Shape& shape = page.add(shapeClass);
        shape.setPlace({10, 20, 100, 40});
        TagAction* action = page.add(type, shape);
        action->setTags({QStringLiteral("@::a")});
        give(*action, settings);
        page.manager->open(&page.database);
        for (const QVariant& value : values)
            page.setProperty(QStringLiteral("a"), value);
        QCOMPARE(shape.namedProperty(property), shown);
    }

    // Shapes hold a level within its bounds themselves; one of another host may not.
    void aLevelNeverLeavesItsBounds()
    {
        TestShape shape;
        LevelAction action(&shape);
        action.setTags({QStringLiteral("@::a")});
        action.resolve(nullptr);
        const auto levelOf = [&](double value) {
            action.updatePropertyValue(QStringLiteral("a"), value);
            action.updateDatatoTarget(false);
            return shape.namedProperty(QStringLiteral("Level")).toDouble();
        };
        QCOMPARE(levelOf(50), 0.5);
        QCOMPARE(levelOf(101), 1.0);
        QCOMPARE(levelOf(-1), 0.0);
    }

    void aValueBecomesAText_data()
    {
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QVariantMap& settings, const QVariant& value, const char* text) {
            QTest::newRow(name) << settings << value << QString::fromLatin1(text);
        };
        const QString format = QStringLiteral("Format");
        const QString decimals = QStringLiteral("Decimals");
        const QVariantMap states{
            {QStringLiteral("Texts"), QStringList({QStringLiteral("Closed"), QStringLiteral("Open")})}};
        row("no value is no text", {}, QVariant(), "");
        row("no value is no text in a format either", {{format, QStringLiteral("<%1>")}}, QVariant(), "");
        row("a real number has as many decimals as needed", {}, 2.5, "2.5");
        row("a real number has six digits", {}, 1234567.0, "1.23457e+06");
        row("decimals are filled up", {{decimals, 2}}, 2.5, "2.50");
        row("decimals are rounded", {{decimals, 1}}, 2.26, "2.3");
        row("a whole number has no decimals", {{decimals, 2}}, 3, "3");
        row("what is no number says so", {}, notANumber, "nan");
        row("a format surrounds the value", {{format, QStringLiteral("%1 bar")}}, 2.5, "2.5 bar");
        row("a format may hold the value twice", {{format, QStringLiteral("%1/%1")}}, 3, "3/3");
        row("a format may hold no value", {{format, QStringLiteral("none")}}, 3, "none");
        row("a place in the value stays text", {{format, QStringLiteral("<%1>")}}, QStringLiteral("a%1b"), "<a%1b>");
        row("the first text is that of 0", states, 0, "Closed");
        row("the texts count for real numbers", states, 1.0, "Open");
        row("the texts count for switches", states, true, "Open");
        row("a number beyond the texts shows in the format", states, 2, "2");
        row("a number before the texts shows in the format", states, -1, "-1");
        row("a number between the texts shows in the format", states, 0.5, "0.5");
        row("a time is shown in local time", {}, QDateTime(QDate(2026, 3, 2), QTime(8, 0, 9)), "2026-03-02 08:00:09");
        row("a time of another zone is shown in local time", {}, QDateTime(QDate(2026, 3, 2), QTime(8, 0, 9)).toUTC(),
            "2026-03-02 08:00:09");
    }
    void aValueBecomesAText()
    {
        QFETCH(QVariantMap, settings);
        QFETCH(QVariant, value);
        QFETCH(QString, text);
        TextAction action(nullptr);
        give(action, settings);
        QCOMPARE(action.textOf(value), text);
    }

    void twoContactsTellAState_data()
    {
        QTest::addColumn<QVariant>("open");
        QTest::addColumn<QVariant>("closed");
        QTest::addColumn<int>("state");
        const QString text = QStringLiteral("abc");
        QTest::newRow("only the first is on: open") << QVariant(1) << QVariant(0) << 1;
        QTest::newRow("only the second is on: closed") << QVariant(0) << QVariant(1) << 0;
        QTest::newRow("neither is on: on the way") << QVariant(0.0) << QVariant(0) << 2;
        QTest::newRow("both are on: a contradiction") << QVariant(1) << QVariant(1.0) << 3;
        QTest::newRow("switches count") << QVariant(true) << QVariant(false) << 1;
        QTest::newRow("any other number than 0 is on") << QVariant(-0.5) << QVariant(0) << 1;
        QTest::newRow("without the first the state is unknown") << QVariant() << QVariant(1) << -1;
        QTest::newRow("without the second the state is unknown") << QVariant(1) << QVariant() << -1;
        QTest::newRow("a first that is no number makes it unknown") << QVariant(text) << QVariant(0) << -1;
        QTest::newRow("a second that is no number makes it unknown") << QVariant(1) << QVariant(text) << -1;
        QTest::newRow("a first that is NaN makes it unknown") << QVariant(notANumber) << QVariant(0) << -1;
        QTest::newRow("a second that is NaN makes it unknown") << QVariant(0) << QVariant(notANumber) << -1;
    }
    void twoContactsTellAState()
    {
        QFETCH(QVariant, open);
        QFETCH(QVariant, closed);
        QFETCH(int, state);
        TestPage page;
        Shape& shape = page.add(QStringLiteral("Valve"));
        auto* action = static_cast<StateAction*>(page.add(TagAction::State, shape));
        action->setTags({QStringLiteral("@::a"), QStringLiteral("@::b")});
        give(*action, {{QStringLiteral("Offset"), 10}}); // of a single value alone
        page.manager->open(&page.database);
        page.setProperty(QStringLiteral("a"), open);
        page.setProperty(QStringLiteral("b"), closed);
        QCOMPARE(action->state(), state);
        QCOMPARE(shape.namedProperty(QStringLiteral("State")), QVariant(state));
    }

    void coloursFollowTheFirstRuleThatHolds()
    {
        TestPage page;
        Shape& shape = page.add(QStringLiteral("Rectangle"));
        QVERIFY(shape.setNamedProperty(QStringLiteral("FillColor"), QStringLiteral("#010203")));
        QVERIFY(shape.setNamedProperty(QStringLiteral("LineWidth"), 2));
        auto* action = static_cast<ColourAction*>(page.add(TagAction::Colour, shape));
        action->setRules({above(QStringLiteral("P0"), QStringLiteral("10"),
                                {{QStringLiteral("FillColor"), QStringLiteral("#ff0000")}}),
                          above(QStringLiteral("P0"), QStringLiteral("5"),
                                {{QStringLiteral("FillColor"), QStringLiteral("#ffff00")},
                                 {QStringLiteral("LineWidth"), 7},
                                 {QStringLiteral("no such property"), 1}})});
        QCOMPARE(action->drivenProperties(), QStringList({QStringLiteral("FillColor"), QStringLiteral("LineWidth"),
                                                          QStringLiteral("no such property")}));
        page.manager->open(&page.database);
        const auto look = [&shape] {
            return QStringLiteral("%1 %2").arg(shape.namedProperty(QStringLiteral("FillColor")).value<QColor>().name(),
                                               shape.namedProperty(QStringLiteral("LineWidth")).toString());
        };
        QCOMPARE(look(), QStringLiteral("#010203 2"));
        QCOMPARE(action->matchedCondition(), QString());
        page.take({{0, 11}});
        QCOMPARE(look(), QStringLiteral("#ff0000 2"));
        QCOMPARE(action->matchedCondition(), QStringLiteral("P0 > 10"));
        page.take({{0, 10}});
        QCOMPARE(look(), QStringLiteral("#ffff00 7"));
        QCOMPARE(action->matchedCondition(), QStringLiteral("P0 > 5"));
        page.take({{0, 10}}, ValueMark::CommunicationFailed);
        QCOMPARE(look(), QStringLiteral("#010203 2"));
        QCOMPARE(action->matchedCondition(), QString());
        page.take({{0, 10}});
        QCOMPARE(look(), QStringLiteral("#ffff00 7"));
        page.take({}); // all of the source has failed
        QCOMPARE(look(), QStringLiteral("#010203 2"));
        page.take({{3, 1}});
        QCOMPARE(look(), QStringLiteral("#ffff00 7"));
        page.take({{0, 5}});
        QCOMPARE(look(), QStringLiteral("#010203 2"));
    }

    void blinkingIsNoProperty()
    {
        ColourAction action(nullptr);
        action.setRules({above(QStringLiteral("P0"), QStringLiteral("1"),
                               {{QStringLiteral("Blink"), true}, {QStringLiteral("LineColor"), QStringLiteral("red")}}),
                         above(QStringLiteral("P0"), QStringLiteral("0"),
                               {{QStringLiteral("LineColor"), QStringLiteral("blue")}})});
        QCOMPARE(action.drivenProperties(), QStringList(QStringLiteral("LineColor")));
    }

    void aShapeIsShownWhileARuleHolds_data()
    {
        QTest::addColumn<bool>("shownWhenTrue");
        QTest::addColumn<bool>("drawn");
        QTest::addColumn<QList<double>>("values");
        QTest::addColumn<bool>("isFailed");
        QTest::addColumn<bool>("visible");
        using Values = QList<double>;
        QTest::newRow("shown while it holds") << true << true << Values{11} << false << true;
        QTest::newRow("hidden otherwise") << true << true << Values{11, 10} << false << false;
        QTest::newRow("shown again") << true << true << Values{11, 10, 11} << false << true;
        QTest::newRow("a second rule is enough") << true << true << Values{-1} << false << true;
        QTest::newRow("hidden before the first value") << true << true << Values{} << false << false;
        QTest::newRow("hidden while it holds") << false << true << Values{11} << false << false;
        QTest::newRow("and shown otherwise") << false << true << Values{10} << false << true;
        QTest::newRow("shown before the first value") << false << true << Values{} << false << true;
        QTest::newRow("as drawn while the source has failed") << true << true << Values{10} << true << true;
        QTest::newRow("drawn hidden, so hidden then") << true << false << Values{11} << true << false;
        QTest::newRow("drawn hidden, shown while it holds") << true << false << Values{11} << false << true;
    }
    void aShapeIsShownWhileARuleHolds()
    {
        QFETCH(bool, shownWhenTrue);
        QFETCH(bool, drawn);
        QFETCH(QList<double>, values);
        QFETCH(bool, isFailed);
        QFETCH(bool, visible);
        TestPage page;
        Shape& shape = page.add(QStringLiteral("Rectangle"));
        QVERIFY(shape.setNamedProperty(QStringLiteral("Visible"), drawn));
        TagAction* action = page.add(TagAction::Visibility, shape);
        action->setRules({above(QStringLiteral("P0"), QStringLiteral("10"),
                                {{QStringLiteral("Opacity"), 0.5}}), // what the rules set does not count
                          ruleOf({{QStringLiteral("P0"), QStringLiteral("0"), OpType::Less}}, {})});
        give(*action, {{QStringLiteral("ShownWhenTrue"), shownWhenTrue}});
        QCOMPARE(action->drivenProperties(), QStringList(QStringLiteral("Visible")));
        page.manager->open(&page.database);
        for (const double value : values)
            page.take({{0, value}});
        if (isFailed)
            page.take({});
        QCOMPARE(shape.namedProperty(QStringLiteral("Visible")).toBool(), visible);
        QCOMPARE(shape.namedProperty(QStringLiteral("Opacity")), QVariant(1.0));
    }

    void everyRecordIsASampleOfATrend()
    {
        TestPage page;
        auto& trend = static_cast<Trend&>(page.add(QStringLiteral("Trend")));
        TagAction* action = page.add(TagAction::Trend, trend);
        action->setTags({QStringLiteral("P0"), QStringLiteral("P1")});
        QCOMPARE(action->drivenProperties(), QStringList());
        page.manager->open(&page.database);
        QCOMPARE(trend.sampleCount(0), 0);
        page.takeAt(begin, 0, 1);
        page.takeAt(begin + 1000, 0, 1); // unchanged counts as well
        QCOMPARE(trend.sampleCount(0), 2);
        QCOMPARE(trend.sampleCount(1), 0);
        page.takeAt(begin + 1000, 1, 5);
        QCOMPARE(trend.sampleCount(1), 1);
        page.takeAt(begin + 2000, 0, 1, ValueMark::Invalid);
        page.takeAt(begin + 3000, 0, 1, ValueMark::CommunicationFailed);
        QCOMPARE(trend.sampleCount(0), 4); // gaps
        page.takeAt(begin + 2500, 0, 1);
        QCOMPARE(trend.sampleCount(0), 4); // older than the newest
        page.take({{0, 2}});
        QCOMPARE(trend.sampleCount(0), 4); // without a time
        page.takeAt(begin + 4000, 2, 1);
        QCOMPARE(trend.sampleCount(0), 4); // another point's
    }

    void aGapOfATrendIsDrawnAsNone()
    {
        TestPage page;
        auto& trend = static_cast<Trend&>(page.add(QStringLiteral("Trend")));
        trend.setPlace({0, 0, 200, 100});
        TagAction* action = page.add(TagAction::Trend, trend);
        action->setTags({QStringLiteral("P0")});
        page.manager->open(&page.database);
        Trend expected;
        expected.setPlace({0, 0, 200, 100});
        const qint32 qualities[] = {0, 0, ValueMark::Invalid, 0, ValueMark::CommunicationFailed, ValueMark::Stale};
        for (int second = 0; second < 6; ++second) {
            const qint32 quality = qualities[second];
            const qint64 timeMs = begin + second * 100'000;
            page.takeAt(timeMs, 0, second % 3, quality);
            expected.addSample(0, timeMs, quality & ~ValueMark::Stale ? notANumber : second % 3);
        }
        QCOMPARE(drawn(trend), drawn(expected));
    }

    void aPointOfTwoCurvesIsOneSampleOfEach()
    {
        TestPage page;
        auto& trend = static_cast<Trend&>(page.add(QStringLiteral("Trend")));
        page.add(TagAction::Trend, trend)->setTags({QStringLiteral("P0"), QStringLiteral("P0")});
        page.manager->open(&page.database);
        page.takeAt(begin, 0, 1);
        QCOMPARE(trend.sampleCount(0), 1);
        QCOMPARE(trend.sampleCount(1), 1);
    }

    void aCurveOfAFieldTakesNoPresentValues()
    {
        TestPage page;
        auto& trend = static_cast<Trend&>(page.add(QStringLiteral("Trend")));
        page.add(TagAction::Trend, trend)->setTags({QStringLiteral("P0"), QStringLiteral("P0:HighLimit")});
        page.manager->open(&page.database);
        page.takeAt(begin, 0, 1);
        QCOMPARE(trend.sampleCount(0), 1);
        QCOMPARE(trend.sampleCount(1), 0);
    }

    void aCopyOfATrendLeavesWaitingSamples()
    {
        Trend first;
        Trend second;
        TrendAction action(&first);
        action.setTags({QStringLiteral("#200001")});
        action.resolve(nullptr);
        MwDataDepartment batch;
        QuorixData record = testRecord(1.0);
        record.setMember("time", QuorixValue(QDateTime::fromMSecsSinceEpoch(begin, Qt::UTC)));
        batch.points.emplace(200001U, record);
        action.readDataFromSource(nullptr, batch, 0);
        const std::unique_ptr<ScadaTagActionInterface> copy(action.clone(&second));
        copy->updateDatatoTarget(true);
        action.updateDatatoTarget(false);
        QCOMPARE(first.sampleCount(0), 1);
        QCOMPARE(second.sampleCount(0), 0);
    }

    void ofAnotherShapeATrendDrawsNothing()
    {
        TestPage page;
        Shape& shape = page.add(QStringLiteral("Rectangle"));
        page.add(TagAction::Trend, shape)->setTags({QStringLiteral("P0")});
        page.manager->open(&page.database);
        page.takeAt(begin, 0, 1);
        QCOMPARE(page.manager->batchCount(), quint64(1));
    }

    void historyIsShownAsAnyOtherField()
    {
        TestPage page;
        Shape& shape = page.add(QStringLiteral("ReadOut"));
        TagAction* action = page.add(TagAction::Number, shape);
        action->setTags({QStringLiteral("P0:PastMean")});
        page.manager->open(&page.database);
        page.take({{0, 1}});
        QCOMPARE(shape.namedProperty(QStringLiteral("Value")), QVariant(7.5));
    }

    void withoutAShapeNothingHappens_data() { addKinds(); }
    void withoutAShapeNothingHappens()
    {
        QFETCH(int, type);
        const auto action = wholeAction(type);
        action->resolve(nullptr);
        action->runItSelf(nullptr, nullptr);
        action->updateDatatoTarget(true);
        action->timeOut();
        QVERIFY(!action->shape());
        QVERIFY(!action->interactMouseEvent());
    }

    void aCopyIsOfTheSameSettings_data() { addKinds(); }
    void aCopyIsOfTheSameSettings()
    {
        QFETCH(int, type);
        TestPage page;
        Shape& shape = page.add(QStringLiteral("Rectangle"));
        auto other = ShapeFactory::create(QStringLiteral("Rectangle"));
        TagAction* action = wholeAction(type, &shape).release();
        action->setUnknownMembers("{\"by\":\"hand\"}");
        action->setUnknownSettings("{\"Shade\":1}");
        page.manager->addAction(action);
        page.manager->open(&page.database);
        page.take({{0, 50}, {1, -3}});

        const std::unique_ptr<ScadaTagActionInterface> copied(action->clone(other.get()));
        auto& copy = dynamic_cast<TagAction&>(*copied);
        QCOMPARE(copy.type(), type);
        QCOMPARE(copy.name(), action->name());
        QCOMPARE(copy.shape(), static_cast<TesselInterface*>(other.get()));
        QCOMPARE(copy.tags(), taggedTexts());
        QCOMPARE(copy.settings(), action->settings());
        QCOMPARE(copy.rules().size(), std::size_t(2));
        QCOMPARE(copy.rules()[0].text(), QStringLiteral("P0:PastMean >= 10 && P1 < -2.5"));
        QCOMPARE(copy.rules()[0].set, someRules()[0].set);
        QCOMPARE(copy.rules()[1].text(), QStringLiteral("@R::UNIT:CommState > 0"));
        QCOMPARE(copy.unknownMembers(), action->unknownMembers());
        QCOMPARE(copy.unknownSettings(), action->unknownSettings());
        QVERIFY(copy.isEqual(*action) && action->isEqual(copy));
        QList<ObjectTarget*> targets;
        copy.collectTargets(targets);
        QCOMPARE(targets.size(), 7 + 2 * 3);
        for (int place = 0; place < targets.size(); ++place) {
            QVERIFY(!targets.at(place)->value().isValid());
            QCOMPARE(targets.at(place)->getPid(), 0);
            if (place < 7)
                QCOMPARE(targets.at(place)->getTagString(), taggedTexts().at(place));
        }
        QCOMPARE(targets.at(7)->getTagString(), QStringLiteral("P0:PastMean"));

        copy.resolve(&page.database);
        QCOMPARE(targets.at(1)->getPid(), 200002);
        QCOMPARE(int(targets.at(1)->field()->field), int(DataCode::DataField::HighLimit));
        QCOMPARE(int(targets.at(2)->field()->field), int(DataCode::DataField::PastMean));
        QCOMPARE(int(targets.at(7)->field()->field), int(DataCode::DataField::PastMean));
        copy.setTags({QStringLiteral("P3")});
        copy.setRules({});
        QCOMPARE(action->tags(), taggedTexts());
        QCOMPARE(action->rules().size(), std::size_t(2));
        QVERIFY(!copy.isEqual(*action));
    }

    void whatIsEqual_data() { addKinds(); }
    void whatIsEqual()
    {
        QFETCH(int, type);
        const auto action = wholeAction(type);
        QVERIFY(action->isEqual(*wholeAction(type)));
        QVERIFY(!action->isEqual(TestAction()));
        for (const int otherType : TagActionFactory().actionTypes())
            QCOMPARE(action->isEqual(*wholeAction(otherType)), otherType == type);
        const auto differs = [&](const char* how, const auto& change) {
            const auto other = wholeAction(type);
            change(*other);
            QVERIFY2(!action->isEqual(*other), how);
            QVERIFY2(!other->isEqual(*action), how);
        };
        differs("one tag less", [](TagAction& other) { other.setTags(taggedTexts().mid(1)); });
        differs("another order of tags", [](TagAction& other) {
            QStringList tags = taggedTexts();
            tags.swapItemsAt(0, 1);
            other.setTags(tags);
        });
        const auto differsInRule = [&](const char* how, const ConditionData& second, const QVariantMap& set) {
            differs(how, [&](TagAction& other) {
                std::vector<ActionRule> rules = someRules();
                rules[0].conditions[1] = RuleCondition(second);
                rules[0].set = set;
                other.setRules(rules);
            });
        };
        const QVariantMap set = someRules()[0].set;
        differsInRule("an operator", {QStringLiteral("P1"), QStringLiteral("-2.5"), OpType::LessOrEqual}, set);
        differsInRule("a bound", {QStringLiteral("P1"), QStringLiteral("-2.50"), OpType::Less}, set);
        differsInRule("a tag", {QStringLiteral("P1:HighLimit"), QStringLiteral("-2.5"), OpType::Less}, set);
        differsInRule("what is set", {QStringLiteral("P1"), QStringLiteral("-2.5"), OpType::Less},
                      {{QStringLiteral("FillColor"), QStringLiteral("#ff0001")}, {QStringLiteral("LineWidth"), 3}});
        differs("a rule less", [](TagAction& other) { other.setRules({someRules()[0]}); });
        const QVariantMap settings = otherSettings(type);
        for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
            differs(qPrintable(setting.key()), [&](TagAction& other) {
                const QVariant first = TagActionFactory::make(type, nullptr)->settings().value(setting.key());
                QVERIFY(other.setSetting(setting.key(), first));
            });
        }
    }

    void whatIsStoredComesBack_data() { addKinds(); }
    void whatIsStoredComesBack()
    {
        QFETCH(int, type);
        const auto action = wholeAction(type);
        const auto loaded = TagActionFactory::make(type, nullptr);
        QMap<QString, QVariant> values;
        values.insert(QStringLiteral("kept"), 1);
        read(*loaded, bytesOf(*action), values);
        QCOMPARE(loaded->tags(), taggedTexts());
        QCOMPARE(loaded->settings(), action->settings());
        QCOMPARE(loaded->rules()[0].text(), QStringLiteral("P0:PastMean >= 10 && P1 < -2.5"));
        QVERIFY(loaded->isEqual(*action));
        QCOMPARE(values.value(QStringLiteral("kept")), QVariant(1));
        QCOMPARE(values.value(QStringLiteral("pname")), QVariant(QStringLiteral("P0")));
        const QVariantMap settings = action->settings();
        for (auto setting = settings.begin(); setting != settings.end(); ++setting)
            QCOMPARE(values.value(setting.key()).toString(), setting.value().toString());
    }

    void aResolvedActionIsStoredAsItWasWritten_data() { addKinds(); }
    void aResolvedActionIsStoredAsItWasWritten()
    {
        QFETCH(int, type);
        TestPage page;
        const auto action = wholeAction(type);
        const QByteArray before = bytesOf(*action);
        action->resolve(&page.database);
        QCOMPARE(bytesOf(*action), before);
    }

    void whatIsCutOffLeavesTheActionAsItWas_data() { addKinds(); }
    void whatIsCutOffLeavesTheActionAsItWas()
    {
        QFETCH(int, type);
        const QByteArray whole = bytesOf(*wholeAction(type));
        const auto asItWas = TagActionFactory::make(type, nullptr);
        asItWas->setTags({QStringLiteral("P3:LowLimit")});
        asItWas->setRules({above(QStringLiteral("P2"), QStringLiteral("1"), {{QStringLiteral("Opacity"), 0.25}})});
        const std::unique_ptr<ScadaTagActionInterface> read(asItWas->clone(nullptr));
        for (int size = 0; size < whole.size(); ++size) {
            QMap<QString, QVariant> values;
            ::read(static_cast<TagAction&>(*read), whole.left(size), values);
            QVERIFY2(read->isEqual(*asItWas), qPrintable(QString::number(size)));
            QVERIFY(values.isEmpty());
        }
    }

    void damagedBytesLeaveTheActionAsItWas_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("another layout") << QByteArray::fromHex("02 0000 0000 ffffffff");
        QTest::newRow("more tags than any action has") << QByteArray::fromHex("01 03e9 0000 ffffffff");
        QTest::newRow("more rules than any action has") << QByteArray::fromHex("01 0000 03e9 ffffffff");
        QTest::newRow("more conditions than any rule has")
            << QByteArray::fromHex("01 0000 0001 03e9 ffffffff ffffffff");
    }
    void damagedBytesLeaveTheActionAsItWas()
    {
        QFETCH(QByteArray, bytes);
        TextAction action(nullptr);
        action.setTags({QStringLiteral("P0")});
        QMap<QString, QVariant> values;
        read(action, bytes, values);
        QCOMPARE(action.tags(), QStringList(QStringLiteral("P0")));
        QVERIFY(values.isEmpty());
    }

    void anActionWithoutAnythingComesBack()
    {
        TextAction action(nullptr);
        action.setTags({QStringLiteral("P0")});
        QMap<QString, QVariant> values;
        read(action, QByteArray::fromHex("01 0000 0000 ffffffff"), values);
        QVERIFY(action.isEqual(TextAction(nullptr)));
        QCOMPARE(values.value(QStringLiteral("pname")).toString(), QString());
    }

    void settingsTakeWhatTheyCanHold_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("taken"); // invalid for none
        const auto row = [](const char* text, int type, const char* name, const QVariant& value,
                            const QVariant& taken = {}) {
            QTest::newRow(text) << type << QString::fromLatin1(name) << value << taken;
        };
        row("a number", TagAction::Number, "Factor", -2.5, -2.5);
        row("a number as a text", TagAction::Number, "Factor", QStringLiteral("2.5"), 2.5);
        row("no number", TagAction::Number, "Factor", QStringLiteral("much"));
        row("an empty text for a number", TagAction::Level, "Low", QString());
        row("NaN for a number", TagAction::Level, "High", notANumber);
        row("an infinity for a number", TagAction::Rotation, "HighAngle", infinity);
        row("nothing for a number", TagAction::Position, "DistanceX", QVariant());
        row("a place for a number", TagAction::Position, "DistanceY", QPointF(1, 2));
        row("a real number for a whole one is rounded", TagAction::Text, "Decimals", 2.6, 3);
        row("more than a whole number can be", TagAction::State, "Offset", 3e9);
        row("a list for a whole number", TagAction::Text, "Decimals", QStringList{QStringLiteral("a")});
        row("a text", TagAction::Text, "Format", QStringLiteral("%1"), QStringLiteral("%1"));
        row("nothing for a text", TagAction::Text, "Format", QVariant());
        row("a list of texts", TagAction::Text, "Texts", QStringList{QStringLiteral("a")},
            QStringList{QStringLiteral("a")});
        row("a text for a list of texts", TagAction::Text, "Texts", QStringLiteral("a"));
        row("a switch", TagAction::Visibility, "ShownWhenTrue", false, false);
        row("a number for a switch", TagAction::Visibility, "ShownWhenTrue", 0, false);
        row("a text for a switch", TagAction::Visibility, "ShownWhenTrue", QStringLiteral("yes"));
        row("a setting that there is not", TagAction::Level, "Factor", 1.0);
        row("a setting in another case", TagAction::Level, "low", 1.0);
        row("a setting of a kind without any", TagAction::Trend, "Low", 1.0);
        row("a setting without a name", TagAction::Colour, "", 1.0);
    }
    void settingsTakeWhatTheyCanHold()
    {
        QFETCH(int, type);
        QFETCH(QString, name);
        QFETCH(QVariant, value);
        QFETCH(QVariant, taken);
        const auto action = TagActionFactory::make(type, nullptr);
        const QVariantMap before = action->settings();
        QCOMPARE(action->setSetting(name, value), taken.isValid());
        if (taken.isValid())
            QCOMPARE(action->settings().value(name), taken);
        else
            QCOMPARE(action->settings(), before);
    }

    void settingsAreListedInTheirOrder()
    {
        QStringList names;
        for (const ActionSetting& setting : TextAction(nullptr).settingTable())
            names.append(setting.name);
        QCOMPARE(names, QStringList({QStringLiteral("Property"), QStringLiteral("Format"), QStringLiteral("Decimals"),
                                     QStringLiteral("Texts")}));
        QCOMPARE(TextAction(nullptr).settings().value(QStringLiteral("Decimals")), QVariant(-1));
        QVERIFY(TrendAction(nullptr).settings().isEmpty());
    }

    void aTagIsSetForEveryTestedValue()
    {
        TextAction action(nullptr);
        action.setTags({QStringLiteral("P0"), QStringLiteral("P1")});
        action.setRules(someRules());
        action.setTagString(QStringLiteral("P2:HighLimit"));
        QCOMPARE(action.tags(), QStringList({QStringLiteral("P2:HighLimit"), QStringLiteral("P2:HighLimit")}));
        QCOMPARE(action.rules()[0].text(), QStringLiteral("P2:HighLimit >= 10 && P2:HighLimit < -2.5"));
        QCOMPARE(action.tagName(), QStringLiteral("P2:HighLimit"));
    }

    void textsOfTagsAreReplacedAsWritten()
    {
        TestPage page;
        TextAction action(nullptr);
        action.setTags({QStringLiteral("P0:HighLimit"), QStringLiteral("P1")});
        action.setRules({above(QStringLiteral("P0"), QStringLiteral("P0"), {})});
        action.resolve(&page.database);
        QVERIFY(!action.replaceText(QStringLiteral("p0"), QStringLiteral("P3"))); // the case counts
        QVERIFY(action.replaceText(QStringLiteral("P0"), QStringLiteral("P3")));
        QCOMPARE(action.tags(), QStringList({QStringLiteral("P3:HighLimit"), QStringLiteral("P1")}));
        QCOMPARE(action.rules()[0].text(), QStringLiteral("P3 > P3"));
        QVERIFY(action.replaceText(QStringLiteral("HighLimit"), QStringLiteral("LowLimit")));
        QCOMPARE(action.tags().constFirst(), QStringLiteral("P3:LowLimit"));
    }

    void pointsAreRenamedAsWritten()
    {
        TestPage page;
        TextAction action(nullptr);
        action.setTags({QStringLiteral("P0:HighLimit"), QStringLiteral("P1")});
        action.setRules({above(QStringLiteral("P0"), QStringLiteral("5"), {})});
        action.resolve(&page.database);
        const QList<QPair<QString, QString>> renames{{QStringLiteral("P0"), QStringLiteral("P3")}};
        QCOMPARE(action.replacePointNames(&page.hub, renames), 2);
        QCOMPARE(action.tags(), QStringList({QStringLiteral("P3:HighLimit"), QStringLiteral("P1")}));
        QCOMPARE(action.rules()[0].text(), QStringLiteral("P3 > 5"));
        QList<ObjectTarget*> targets;
        action.collectTargets(targets);
        QCOMPARE(targets.first()->getPid(), 200004);
        QCOMPARE(action.replacePointNames(&page.hub, {{QStringLiteral("P9"), QStringLiteral("P8")}}), 0);
    }

    void membersOfValuesThatAreNotKnownAreKept()
    {
        TextAction action(nullptr);
        action.addTarget(ObjectTarget::fromTagString(QStringLiteral("P0")), "{\"by\":\"hand\"}");
        action.addTarget(ObjectTarget::fromTagString(QStringLiteral("P1")));
        QCOMPARE(action.unknownTargetMembers(0), QByteArray("{\"by\":\"hand\"}"));
        QCOMPARE(action.unknownTargetMembers(1), QByteArray());
        QCOMPARE(action.unknownTargetMembers(2), QByteArray());
        QCOMPARE(action.unknownTargetMembers(-1), QByteArray());
        QVERIFY(!action.value(2).isValid() && !action.value(-1).isValid());
    }

    void anUnloadedActionKeepsItsSource()
    {
        auto shape = ShapeFactory::create(QStringLiteral("Rectangle"));
        const UnloadedAction action(nullptr, "{\"type\":77}");
        const std::unique_ptr<ScadaTagActionInterface> copy(action.clone(shape.get()));
        QCOMPARE(static_cast<UnloadedAction&>(*copy).source(), QByteArray("{\"type\":77}"));
        QCOMPARE(copy->shape(), static_cast<TesselInterface*>(shape.get()));
        copy->updateDatatoTarget(true);
        QCOMPARE(copy->type(), -1);
        QVERIFY(static_cast<UnloadedAction&>(*copy).drivenProperties().isEmpty());
    }

    void theFactoryKnowsNineKinds()
    {
        const TagActionFactory factory;
        QCOMPARE(factory.actionTypes(), QList<int>({2, 1, 3, 8, 4, 5, 6, 7, 9}));
        const QStringList names = {QStringLiteral("Number"),   QStringLiteral("Text"),     QStringLiteral("Fill level"),
                                   QStringLiteral("State"),    QStringLiteral("Colour"),   QStringLiteral("Visibility"),
                                   QStringLiteral("Rotation"), QStringLiteral("Position"), QStringLiteral("Trend")};
        QStringList found;
        for (const int type : factory.actionTypes()) {
            found.append(factory.actionName(type));
            const std::unique_ptr<ScadaTagActionInterface> action(factory.createAction(type, nullptr));
            QCOMPARE(action->type(), type);
            QCOMPARE(action->name(), factory.actionName(type));
        }
        QCOMPARE(found, names);
        for (const int unknown : {0, 10, -1, 1 << 30}) {
            QCOMPARE(factory.actionName(unknown), QString());
            QCOMPARE(factory.createAction(unknown, nullptr), nullptr);
            QCOMPARE(factory.drivenProperties(unknown), QStringList());
            QVERIFY(!factory.canDrive(unknown, ShapeFactory::create(QStringLiteral("Label")).get()));
        }
    }

    void whatAKindDrivesAtFirst()
    {
        const TagActionFactory factory;
        QCOMPARE(factory.drivenProperties(TagAction::Text), QStringList(QStringLiteral("Text")));
        QCOMPARE(factory.drivenProperties(TagAction::Number), QStringList(QStringLiteral("Value")));
        QCOMPARE(factory.drivenProperties(TagAction::Level), QStringList(QStringLiteral("Level")));
        QCOMPARE(factory.drivenProperties(TagAction::Colour), QStringList());
        QCOMPARE(factory.drivenProperties(TagAction::Visibility), QStringList(QStringLiteral("Visible")));
        QCOMPARE(factory.drivenProperties(TagAction::Rotation), QStringList(QStringLiteral("Rotation")));
        QCOMPARE(factory.drivenProperties(TagAction::Position), QStringList(QStringLiteral("Position")));
        QCOMPARE(factory.drivenProperties(TagAction::State), QStringList(QStringLiteral("State")));
        QCOMPARE(factory.drivenProperties(TagAction::Trend), QStringList());
        const auto action = TagActionFactory::make(TagAction::State, nullptr);
        QVERIFY(action->setSetting(QStringLiteral("Property"), QStringLiteral("Opacity")));
        QCOMPARE(action->drivenProperties(), QStringList(QStringLiteral("Opacity")));
    }

    void whichShapesAKindCanDrive_data()
    {
        QTest::addColumn<QString>("shapeClass");
        QTest::addColumn<QList<int>>("beside"); // the four that every shape takes
        using Types = QList<int>;
        QTest::newRow("a label") << QStringLiteral("Label") << Types{TagAction::Text};
        QTest::newRow("a read-out") << QStringLiteral("ReadOut") << Types{TagAction::Number, TagAction::Text};
        QTest::newRow("a rectangle") << QStringLiteral("Rectangle") << Types{};
        QTest::newRow("an ellipse") << QStringLiteral("Ellipse") << Types{};
        QTest::newRow("a line") << QStringLiteral("Line") << Types{};
        QTest::newRow("a pipe") << QStringLiteral("Pipe") << Types{};
        QTest::newRow("a bar") << QStringLiteral("Bar") << Types{TagAction::Number, TagAction::Level};
        QTest::newRow("a gauge") << QStringLiteral("RoundGauge")
                                 << Types{TagAction::Number, TagAction::Level, TagAction::Text};
        QTest::newRow("a tank") << QStringLiteral("Tank") << Types{TagAction::Number, TagAction::Level};
        QTest::newRow("a trend") << QStringLiteral("Trend") << Types{TagAction::Trend};
        QTest::newRow("a valve") << QStringLiteral("Valve") << Types{TagAction::State};
        QTest::newRow("a pump") << QStringLiteral("Pump") << Types{TagAction::State};
        QTest::newRow("a breaker") << QStringLiteral("Breaker") << Types{TagAction::State};
        QTest::newRow("a symbol") << QStringLiteral("SvgSymbol") << Types{TagAction::State};
        QTest::newRow("a button") << QStringLiteral("Button") << Types{TagAction::Text};
        QTest::newRow("an input field") << QStringLiteral("InputField") << Types{TagAction::Number, TagAction::Text};
        QTest::newRow("a choice") << QStringLiteral("Choice") << Types{};
        QTest::newRow("a date field") << QStringLiteral("DateField") << Types{};
        QTest::newRow("a table") << QStringLiteral("Table") << Types{};
    }
    void whichShapesAKindCanDrive()
    {
        QFETCH(QString, shapeClass);
        QFETCH(QList<int>, beside);
        const TagActionFactory factory;
        const auto shape = ShapeFactory::create(shapeClass);
        beside << TagAction::Colour << TagAction::Visibility << TagAction::Rotation << TagAction::Position;
        for (const int type : factory.actionTypes())
            QVERIFY2(factory.canDrive(type, shape.get()) == beside.contains(type),
                     qPrintable(factory.actionName(type)));
    }

    void whichShapesOfOthersAKindCanDrive()
    {
        const TagActionFactory factory;
        TestShape shape;
        QVERIFY(!factory.canDrive(TagAction::Number, &shape));
        QVERIFY(shape.setNamedProperty(QStringLiteral("Value"), 1.0));
        QVERIFY(factory.canDrive(TagAction::Number, &shape));
        QVERIFY(!factory.canDrive(TagAction::Trend, &shape));
        for (const int type : factory.actionTypes())
            QVERIFY(!factory.canDrive(type, nullptr));
    }

    void theFactoryLoadsWhatWasStored_data() { addKinds(); }
    void theFactoryLoadsWhatWasStored()
    {
        QFETCH(int, type);
        const TagActionFactory factory;
        const auto shape = ShapeFactory::create(QStringLiteral("Rectangle"));
        ScadaTagActionStream stream;
        wholeAction(type)->toStream(stream);
        const std::unique_ptr<ScadaTagActionInterface> loaded(factory.loadAction(type, stream, shape.get()));
        QVERIFY(loaded->isEqual(*wholeAction(type)));
        QCOMPARE(loaded->shape(), static_cast<TesselInterface*>(shape.get()));
        for (const int unknown : {0, 10, -1})
            QCOMPARE(factory.loadAction(unknown, stream, shape.get()), nullptr);
        stream.setData("damaged");
        const std::unique_ptr<ScadaTagActionInterface> fresh(factory.loadAction(type, stream, shape.get()));
        QVERIFY(fresh->isEqual(*TagActionFactory::make(type, nullptr)));
    }

    void editorsAreForTheHostsOwnActions()
    {
        const TagActionFactory factory;
        QWidget parent;
        for (const int type : factory.actionTypes()) {
            const auto action = TagActionFactory::make(type, nullptr);
            const std::unique_ptr<QWidget> editor(factory.createEditor(action.get(), &parent));
            QVERIFY(qobject_cast<ActionEditor*>(editor.get()));
            QCOMPARE(editor->parentWidget(), &parent);
        }
        TestAction foreign;
        UnloadedAction unloaded(nullptr, {});
        QCOMPARE(factory.createEditor(&foreign, &parent), nullptr);
        QCOMPARE(factory.createEditor(&unloaded, &parent), nullptr);
        QCOMPARE(factory.createEditor(nullptr, &parent), nullptr);
    }

    void anEditorShowsTheActionAsItIs()
    {
        const auto action = wholeAction(TagAction::Text);
        const ActionEditor editor(*action);
        const auto text = [&editor](const char* name) {
            return editor.findChild<QLineEdit*>(QString::fromLatin1(name))->text();
        };
        QCOMPARE(editor.findChild<QPlainTextEdit*>(QStringLiteral("tags"))->toPlainText(),
                 taggedTexts().join(QLatin1Char('\n')));
        QCOMPARE(text("Property"), QStringLiteral("ToolTip"));
        QCOMPARE(text("Format"), QStringLiteral("<%1>"));
        QCOMPARE(text("Decimals"), QStringLiteral("3"));
    }

    void whatIsTypedTakesEffectWhenItIsFinished()
    {
        const auto action = TagActionFactory::make(TagAction::Number, nullptr);
        ActionEditor editor(*action);
        QSignalSpy edited(&editor, &ActionEditor::edited);
        auto* factor = editor.findChild<QLineEdit*>(QStringLiteral("Factor"));
        const auto type = [factor](const QString& text) {
            factor->selectAll();
            QTest::keyClicks(factor, text);
        };
        const auto setting = [&action] { return action->settings().value(QStringLiteral("Factor")).toDouble(); };
        type(QStringLiteral("2.5"));
        QCOMPARE(setting(), 1.0);
        QTest::keyClick(factor, Qt::Key_Return);
        QCOMPARE(setting(), 2.5);
        QCOMPARE(edited.count(), 1);
        type(QStringLiteral("much"));
        QTest::keyClick(factor, Qt::Key_Return);
        QCOMPARE(setting(), 2.5);
        QCOMPARE(edited.count(), 1);
        QCOMPARE(factor->palette().color(QPalette::Text), QColor(Qt::red));
        type(QStringLiteral("-3"));
        QTest::keyClick(factor, Qt::Key_Return);
        QCOMPARE(setting(), -3.0);
        QCOMPARE(edited.count(), 2);
        QVERIFY(factor->palette().color(QPalette::Text) != QColor(Qt::red));
    }

    void whatIsLeftAsItWasIsNoEdit()
    {
        const auto action = TagActionFactory::make(TagAction::Number, nullptr);
        ActionEditor editor(*action);
        QSignalSpy edited(&editor, &ActionEditor::edited);
        QTest::keyClick(editor.findChild<QLineEdit*>(QStringLiteral("Factor")), Qt::Key_Return);
        QCOMPARE(edited.count(), 0);
    }

    void textsOfStatesAreTypedWithBars()
    {
        const auto action = TagActionFactory::make(TagAction::Text, nullptr);
        ActionEditor editor(*action);
        auto* texts = editor.findChild<QLineEdit*>(QStringLiteral("Texts"));
        QTest::keyClicks(texts, QStringLiteral("Closed|Open"));
        QTest::keyClick(texts, Qt::Key_Return);
        const auto setting = [&action] { return action->settings().value(QStringLiteral("Texts")).toStringList(); };
        QCOMPARE(setting(), QStringList({QStringLiteral("Closed"), QStringLiteral("Open")}));
        texts->selectAll();
        QTest::keyClick(texts, Qt::Key_Delete);
        QTest::keyClick(texts, Qt::Key_Return);
        QCOMPARE(setting(), QStringList());
    }

    void aSwitchIsToggledByTheSpaceBar()
    {
        const auto action = TagActionFactory::make(TagAction::Visibility, nullptr);
        ActionEditor editor(*action);
        QSignalSpy edited(&editor, &ActionEditor::edited);
        auto* box = editor.findChild<QCheckBox*>(QStringLiteral("ShownWhenTrue"));
        QVERIFY(box->isChecked());
        QTest::keyClick(box, Qt::Key_Space);
        QCOMPARE(action->settings().value(QStringLiteral("ShownWhenTrue")), QVariant(false));
        QCOMPARE(edited.count(), 1);
    }

    void tagsAreTypedOneALine()
    {
        const auto action = TagActionFactory::make(TagAction::Text, nullptr);
        ActionEditor editor(*action);
        editor.layout()->setSizeConstraint(QLayout::SetNoConstraint); // the window has no hints to pass on
        editor.show();
        QVERIFY(QTest::qWaitForWindowActive(&editor));
        auto* tags = editor.findChild<QPlainTextEdit*>(QStringLiteral("tags"));
        tags->setFocus();
        QTest::keyClicks(tags, QStringLiteral(" P0"));
        QTest::keyClick(tags, Qt::Key_Return);
        QTest::keyClick(tags, Qt::Key_Return);
        QTest::keyClicks(tags, QStringLiteral("P1:HighLimit "));
        QTest::keyClick(tags, Qt::Key_Tab); // leaves the field
        QCOMPARE(action->tags(), QStringList({QStringLiteral("P0"), QStringLiteral("P1:HighLimit")}));
    }

    void tagsTakeEffectWhenTheyAreFinished()
    {
        const auto action = TagActionFactory::make(TagAction::Text, nullptr);
        ActionEditor editor(*action);
        editor.layout()->setSizeConstraint(QLayout::SetNoConstraint); // the window has no hints to pass on
        editor.show();
        QVERIFY(QTest::qWaitForWindowActive(&editor));
        QSignalSpy edited(&editor, &ActionEditor::edited);
        auto* tags = editor.findChild<QPlainTextEdit*>(QStringLiteral("tags"));
        tags->setFocus();
        QTest::keyClicks(tags, QStringLiteral("P12"));
        QCOMPARE(action->tags(), QStringList()); // "P" and "P1" are other points
        QTest::keyClick(tags, Qt::Key_Tab);
        QCOMPARE(action->tags(), QStringList(QStringLiteral("P12")));
        QCOMPARE(edited.count(), 1);
    }
};

QTEST_MAIN(tst_TagActions)
#include "tst_tagactions.moc"
