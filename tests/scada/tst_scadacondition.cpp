#include "platform/data/logdatainfo.h"
#include "scada/binding/scadacondition.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/testruntime.h"

#include <QtTest>

#include <limits>

using Korvane::LogicType;
using Korvane::OpType;
using Korvane::ScadaObjectType;

static_assert(!std::is_polymorphic_v<ScadaCondition>);

namespace {

ScadaCondition condition(const char* left, int operation, const char* right, int logic = 0)
{
    return ConditionData{QString::fromUtf8(left), QString::fromUtf8(right), OpType(operation), LogicType(logic)};
}

ScadaCondition comparison(const QVariant& left, int operation, const QVariant& right)
{
    ScadaCondition made = condition("L", operation, "R");
    made.lValue()->setValue(left);
    made.rValue()->setValue(right);
    return made;
}

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

} // namespace

class tst_ScadaCondition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDefaultConditionIsEmpty()
    {
        ScadaCondition made;
        QCOMPARE(made.opType(), OpType::Equal);
        QCOMPARE(made.logicType(), LogicType::None);
        QCOMPARE(made.lValue()->mappingState(), ObjectTarget::TagUnmapped);
        QCOMPARE(made.rValue()->mappingState(), ObjectTarget::TagUnmapped);
        QVERIFY(!made.checkCondition());
        QVERIFY(made.displayString(true).isEmpty());
    }

    void builtFromTextsItHoldsNoValues()
    {
        ScadaCondition made = condition("PUMP:HighLimit", 3, "12.5", 2);
        QCOMPARE(made.lValue()->getTagString(), QStringLiteral("PUMP:HighLimit"));
        QCOMPARE(made.rValue()->getTagString(), QStringLiteral("12.5"));
        QCOMPARE(made.opType(), OpType::Greater);
        QCOMPARE(made.logicType(), LogicType::Or);
        QVERIFY(!made.lValue()->value().isValid());
        QVERIFY(!made.rValue()->value().isValid());
        QVERIFY(!made.checkCondition());
    }

    void builtFromTextsItStoresNoTagStringToRename()
    {
        ScadaCondition made = condition("PUMP", 0, "PUMP");
        QVERIFY(!made.lValue()->replacePointName(nullptr, {{QStringLiteral("PUMP"), QStringLiteral("X")}}));
        QVERIFY(!made.rValue()->replacePointName(nullptr, {{QStringLiteral("PUMP"), QStringLiteral("X")}}));
    }

    void resolvedItComesAlive()
    {
        TestRuntime runtime;
        runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("PUMP"));
        ScadaCondition made = condition("PUMP", 3, "12.5");
        made.lValue()->resolve(&runtime);
        made.rValue()->resolve(&runtime);
        QCOMPARE(made.lValue()->getPid(), 200001);
        QCOMPARE(made.rValue()->value(), QVariant(12.5));
        QVERIFY(!made.checkCondition()); // 0 > 12.5
        made.lValue()->setValue(13);
        QVERIFY(made.checkCondition());
    }

    void checks_data()
    {
        QTest::addColumn<QVariant>("left");
        QTest::addColumn<QVariant>("right");
        QTest::addColumn<QString>("holding"); // the operators that hold, of 0 to 5
        QTest::newRow("equal numbers") << QVariant(10.0) << QVariant(10) << "024";
        QTest::newRow("left less") << QVariant(1) << QVariant(2) << "125";
        QTest::newRow("left greater") << QVariant(2) << QVariant(1) << "345";
        QTest::newRow("double 0.1 and float 0.1 are equal in single precision")
            << QVariant(0.1) << QVariant(0.1f) << "024";
        QTest::newRow("doubles that differ beyond single precision are equal")
            << QVariant(1.0) << QVariant(1.00000001) << "024";
        QTest::newRow("whole numbers beyond single precision are equal")
            << QVariant(16777216) << QVariant(16777217) << "024";
        QTest::newRow("beyond the range of single precision are equal infinities")
            << QVariant(1e300) << QVariant(2e300) << "024";
        QTest::newRow("below the range of single precision are zeros") << QVariant(1e-300) << QVariant(0.0) << "024";
        QTest::newRow("invalid left counts as 0") << QVariant() << QVariant(5) << "125";
        QTest::newRow("invalid right counts as 0") << QVariant(5) << QVariant() << "345";
        QTest::newRow("both invalid: never") << QVariant() << QVariant() << "";
        QTest::newRow("texts of numbers compare as numbers")
            << QVariant(QStringLiteral("9")) << QVariant(QStringLiteral("10")) << "125";
        QTest::newRow("other texts are 0")
            << QVariant(QStringLiteral("on")) << QVariant(QStringLiteral("off")) << "024";
        QTest::newRow("truth values are 1 and 0") << QVariant(true) << QVariant(false) << "345";
        QTest::newRow("NaN left: only unequal") << QVariant(notANumber) << QVariant(1) << "5";
        QTest::newRow("NaN right: only unequal") << QVariant(1) << QVariant(notANumber) << "5";
        QTest::newRow("NaN both: only unequal") << QVariant(notANumber) << QVariant(notANumber) << "5";
        QTest::newRow("infinity") << QVariant(infinity) << QVariant(1) << "345";
    }
    void checks()
    {
        QFETCH(QVariant, left);
        QFETCH(QVariant, right);
        QFETCH(QString, holding);
        QString held;
        for (int operation = -2; operation <= 127; ++operation) {
            if (comparison(left, operation, right).checkCondition())
                held += QString::number(operation);
        }
        QCOMPARE(held, holding);
    }

    void checkingAllocatesNothing()
    {
        const ScadaCondition made = comparison(1.5, 3, 1.0);
        const AllocationCounter counter;
        const bool held = made.checkCondition();
        QCOMPARE(counter.count(), std::size_t(0));
        QVERIFY(held);
    }

    void operatorTexts_data()
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<QString>("text");
        QTest::newRow("equal") << 0 << "==";
        QTest::newRow("less") << 1 << "<";
        QTest::newRow("less or equal") << 2 << "<=";
        QTest::newRow("greater") << 3 << ">";
        QTest::newRow("greater or equal") << 4 << ">=";
        QTest::newRow("unequal") << 5 << "!=";
        QTest::newRow("six") << 6 << "";
        QTest::newRow("minus one") << -1 << "";
    }
    void operatorTexts()
    {
        QFETCH(int, operation);
        QTEST(condition("L", operation, "1").opString(), "text");
    }

    void linkTexts_data()
    {
        QTest::addColumn<int>("logic");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << 0 << "";
        QTest::newRow("and") << 1 << "&&";
        QTest::newRow("or") << 2 << "||";
        QTest::newRow("three") << 3 << "";
        QTest::newRow("minus one") << -1 << "";
    }
    void linkTexts()
    {
        QFETCH(int, logic);
        QTEST(condition("L", 0, "1", logic).logicString(), "text");
    }

    void display_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<int>("operation");
        QTest::addColumn<QString>("right");
        QTest::addColumn<int>("logic");
        QTest::addColumn<QString>("plain");
        QTest::addColumn<QString>("linked");
        QTest::newRow("with a link") << "PUMP" << 4 << "12.5" << 1 << "PUMP >= 12.5"
                                     << "PUMP >= 12.5 &&";
        QTest::newRow("without a link a space stays") << "PUMP" << 4 << "12.5" << 0 << "PUMP >= 12.5"
                                                      << "PUMP >= 12.5 ";
        QTest::newRow("without a left tag") << "" << 4 << "12.5" << 1 << ""
                                            << "";
        QTest::newRow("without a right text") << "PUMP" << 0 << "" << 2 << "PUMP == "
                                              << "PUMP ==  ||";
        QTest::newRow("unknown operator") << "PUMP" << 9 << "1" << 0 << "PUMP  1"
                                          << "PUMP  1 ";
        QTest::newRow("place markers stay text") << "%3" << 0 << "%1" << 0 << "%3 == %1"
                                                 << "%3 == %1 ";
    }
    void display()
    {
        QFETCH(QString, left);
        QFETCH(int, operation);
        QFETCH(QString, right);
        QFETCH(int, logic);
        const ScadaCondition made = ConditionData{left, right, OpType(operation), LogicType(logic)};
        QTEST(made.displayString(false), "plain");
        QTEST(made.displayString(true), "linked");
    }

    void asAMap_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("field");
        QTest::newRow("with a field") << "PUMP:HighLimit"
                                      << "12.5" << 12.5 << 30002;
        QTest::newRow("without a field") << "PUMP"
                                         << "-1e3" << -1000.0 << -1;
        QTest::newRow("a bound that is no number") << "PUMP:Value"
                                                   << "abc" << 0.0 << 0;
        QTest::newRow("nothing on either side") << ""
                                                << "" << 0.0 << -1;
    }
    void asAMap()
    {
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(double, value);
        QFETCH(int, field);
        const ScadaCondition made = ConditionData{left, right, OpType::NotEqual, LogicType::Or};
        const QMap<QString, QVariant> map = made.toMap();
        QCOMPARE(map, (QMap<QString, QVariant>{{QStringLiteral("logicalType"), 2},
                                               {QStringLiteral("oper"), 5},
                                               {QStringLiteral("pname"), left},
                                               {QStringLiteral("value"), value},
                                               {QStringLiteral("dtfield"), field}}));
        QCOMPARE(map.value(QStringLiteral("logicalType")).userType(), int(QMetaType::Int));
        QCOMPARE(map.value(QStringLiteral("oper")).userType(), int(QMetaType::Int));
        QCOMPARE(map.value(QStringLiteral("pname")).userType(), int(QMetaType::QString));
        QCOMPARE(map.value(QStringLiteral("value")).userType(), int(QMetaType::Double));
        QCOMPARE(map.value(QStringLiteral("dtfield")).userType(), int(QMetaType::Int));
    }

    void equality()
    {
        ScadaCondition made = condition("PUMP", 3, "12.5", 1);
        QVERIFY(made.isEqual(condition("PUMP", 3, "12.5", 1)));
        QVERIFY(!made.isEqual(condition("VALVE", 3, "12.5", 1)));
        QVERIFY(!made.isEqual(condition("PUMP", 4, "12.5", 1)));
        QVERIFY(!made.isEqual(condition("PUMP", 3, "12.50", 1)));
        QVERIFY(!made.isEqual(condition("PUMP", 3, "12.5", 2)));
        made.lValue()->setValue(1);
        made.rValue()->setValue(2);
        QVERIFY(made.isEqual(condition("PUMP", 3, "12.5", 1)));
    }

    void settingTheSides()
    {
        ScadaCondition made;
        made.setLValue(ObjectTarget::fromTagString(QStringLiteral("A")));
        QCOMPARE(made.lValue()->getTagString(), QStringLiteral("A"));
        QVERIFY(made.lValue()->replacePointName(nullptr, {{QStringLiteral("A"), QStringLiteral("B")}}));

        made.rValue()->setTagString(QStringLiteral("1"));
        made.rValue()->setValue(1);
        made.setRValueString(QStringLiteral("2"));
        QCOMPARE(made.rValue()->getTagString(), QStringLiteral("2"));
        QCOMPARE(made.rValue()->value(), QVariant(1));
        // The stored tag string is still the first one: renaming finds it.
        QVERIFY(!made.rValue()->replacePointName(nullptr, {{QStringLiteral("2"), QStringLiteral("3")}}));
        QVERIFY(made.rValue()->replacePointName(nullptr, {{QStringLiteral("1"), QStringLiteral("3")}}));
    }

    void copiesShareNoLoggingDescription()
    {
        ScadaCondition original = condition("PUMP", 3, "12.5", 1);
        original.lValue()->setValue(5);
        original.lValue()->setLogDataInfo({});
        original.rValue()->setLogDataInfo({});

        ScadaCondition copy(original);
        ScadaCondition assigned;
        assigned.rValue()->setLogDataInfo({});
        const LogDataInfo* own = assigned.rValue()->getLogDataInfo();
        assigned = original;
        for (ScadaCondition* other : {&copy, &assigned}) {
            QVERIFY(other->isEqual(original));
            QCOMPARE(other->lValue()->value(), QVariant(5));
            QVERIFY(!other->lValue()->getLogDataInfo());
        }
        QVERIFY(!copy.rValue()->getLogDataInfo());
        QCOMPARE(assigned.rValue()->getLogDataInfo(), own);
    }
};

QTEST_GUILESS_MAIN(tst_ScadaCondition)
#include "tst_scadacondition.moc"
