#include "host/control/interlock.h"

#include "host/runtime/runtimedatabase.h"
#include "platform/data/valuemarks.h"

#include <QtTest>

using Korvane::ScadaObjectType;

namespace {

constexpr qint64 begin = Q_INT64_C(1600000000000);
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey pump{ScadaObjectType::DigitalPoint, 100001};
constexpr ObjectKey blank{ScadaObjectType::AnalogPoint, 200002};
constexpr ObjectKey unit{ScadaObjectType::RtuObject, 7};

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

/// LEVEL is 20 with a high limit of 80, PUMP on, "TANK 2" 5, the unit UNIT on line; UNSEEN was never sampled.
struct Values
{
    Values()
    {
        RuntimeDatabase::Object levelObject{level.type, level.id, text("LEVEL")};
        levelObject.high = 80;
        database.setTimeZone(QTimeZone::utc());
        database.setClock([] { return begin; });
        for (const RuntimeDatabase::Object& object :
             {levelObject, RuntimeDatabase::Object{pump.type, pump.id, text("PUMP")},
              RuntimeDatabase::Object{blank.type, blank.id, text("TANK 2")},
              RuntimeDatabase::Object{ScadaObjectType::AnalogPoint, 200003, text("UNSEEN")},
              RuntimeDatabase::Object{unit.type, unit.id, text("UNIT")}}) {
            if (!database.add(object))
                qFatal("a point was refused");
        }
        take(level, 20);
        take(pump, 1);
        take(blank, 5);
        take(unit, 1);
    }
    void take(ObjectKey object, double value, qint32 quality = 0)
    {
        if (!database.takeSample({object, begin, value, quality}))
            qFatal("a sample was ignored");
    }
    /// Empty where it holds.
    QString check(const char* condition) const
    {
        const auto interlock = Interlock::parse(text(condition));
        if (!interlock)
            return text("not read: ") + interlock.error();
        const auto held = interlock->check(database);
        return held ? QString() : held.error();
    }

    RuntimeDatabase database;
};

} // namespace

class tst_Interlock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsOrSaysWhatDoesNot_data()
    {
        QTest::addColumn<QByteArray>("condition");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const char* condition, const char* reason = "") {
            QTest::newRow(name) << QByteArray(condition) << text(reason);
        };
        row("nothing always holds", "");
        row("blanks are nothing", "  \t ");
        row("greater", "LEVEL > 19.5");
        row("not greater", "LEVEL > 20", "LEVEL > 20");
        row("greater or equal", "LEVEL >= 20");
        row("less", "LEVEL < 20", "LEVEL < 20");
        row("less or equal", "LEVEL <= 20");
        row("equal", "PUMP == 1");
        row("not equal", "PUMP != 1", "PUMP != 1");
        row("any blanks", " LEVEL\t>  19 ");
        row("two tags", "LEVEL > PUMP");
        row("a number on the left", "10 < LEVEL");
        row("an exponent", "LEVEL == 2e1");
        row("a negative number", "LEVEL > -1");
        row("a name in quotes", "\"TANK 2\" == 5");
        row("a name in quotes that needs none", "\"LEVEL\" == 20");
        row("quotes on both sides", "\"TANK 2\" < \"LEVEL\"");
        row("both hold", "LEVEL > 10 and PUMP == 1");
        row("one of both fails", "LEVEL > 10 and PUMP == 0", "PUMP == 0");
        row("one of both is enough", "LEVEL > 100 or PUMP == 1");
        row("none is not", "LEVEL > 100 or PUMP == 0", "LEVEL > 100, PUMP == 0");
        // With "or" closer, these would come out the other way.
        row("and binds closer, behind or", "PUMP == 1 or PUMP == 0 and LEVEL > 100");
        row("and binds closer, before or", "LEVEL > 100 and PUMP == 0 or PUMP == 1");
        row("the first of two pairs", "LEVEL > 1 and PUMP == 1 or LEVEL > 100 and PUMP == 0");
        row("neither of two pairs", "LEVEL > 100 and PUMP == 1 or LEVEL > 1 and PUMP == 0", "LEVEL > 100, PUMP == 0");
        row("a limit is a field", "LEVEL:HighLimit == 80");
        row("a value below its own limit", "LEVEL < LEVEL:HighLimit");
        row("a limit that there is not is not known", "LEVEL:LowLimit < 100", "LEVEL:LowLimit < 100");
        row("a statistic is a field", "LEVEL:HourMaximum == 20");
        row("a state of a unit", "@R::UNIT:CommState == 1");
        row("an id names a point", "#200001 == 20");
        row("a value that was never seen", "UNSEEN < 5", "UNSEEN < 5");
        row("nor is it another one", "UNSEEN != 5", "UNSEEN != 5");
        row("a bound that was never seen", "LEVEL != UNSEEN", "LEVEL != UNSEEN");
        row("an unknown tag", "NOWHERE > 1", "the interlock names \"NOWHERE\", which there is not");
        row("an unknown tag beside what holds", "PUMP == 1 or NOWHERE > 1",
            "the interlock names \"NOWHERE\", which there is not");
        row("an unknown bound", "LEVEL > NOWHERE", "the interlock names \"NOWHERE\", which there is not");
        row("an unknown unit", "@R::LEVEL == 1", "the interlock names \"@R::LEVEL\", which there is not");
        row("an application property is no object", "@::Mode == 1",
            "the interlock names \"@::Mode\", which there is not");
    }
    void holdsOrSaysWhatDoesNot()
    {
        QFETCH(QByteArray, condition);
        QFETCH(QString, reason);
        QCOMPARE(Values().check(condition), reason);
    }

    void whatIsNoConditionIsRefused_data()
    {
        QTest::addColumn<QByteArray>("condition");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const char* condition, const char* reason) {
            QTest::newRow(name) << QByteArray(condition) << text(reason);
        };
        const char* short3 = "a comparison needs a tag, an operator and a bound";
        row("a tag alone", "LEVEL", short3);
        row("no bound", "LEVEL >", short3);
        row("no blank around the operator", "LEVEL>20", short3);
        row("no operator", "LEVEL is 20", "\"is\" is no operator: ==, !=, <, <=, > or >=");
        row("a single equals sign", "LEVEL = 20", "\"=\" is no operator: ==, !=, <, <=, > or >=");
        row("an operator in quotes", "LEVEL \">\" 20", "\">\" is no operator: ==, !=, <, <=, > or >=");
        row("an operator for a tag", "> > 20", "\">\" is no tag");
        row("an operator for a bound", "LEVEL > <", "\"<\" is no tag");
        row("a link for a tag", "and > 20", "\"and\" is no tag");
        row("an empty name", "\"\" > 20", "\"\" is no tag");
        row("another link", "LEVEL > 20 xor PUMP == 1", "\"xor\" does not join two comparisons: and, or");
        row("links have small letters", "LEVEL > 20 AND PUMP == 1", "\"AND\" does not join two comparisons: and, or");
        row("a link in quotes", "LEVEL > 20 \"and\" PUMP == 1", "\"and\" does not join two comparisons: and, or");
        row("a link at the end", "LEVEL > 20 and", "\"and\" does not join two comparisons: and, or");
        row("half a comparison behind a link", "LEVEL > 20 and PUMP", short3);
        row("quotes that are not closed", "LEVEL > 20 and \"TANK", "a quotation mark at place 16 is not closed");
        row("an open quote alone", "\"", "a quotation mark at place 1 is not closed");
        row("brackets", "( LEVEL > 20 )", "\">\" is no tag");
    }
    void whatIsNoConditionIsRefused()
    {
        QFETCH(QByteArray, condition);
        QFETCH(QString, reason);
        const auto interlock = Interlock::parse(text(condition));
        QVERIFY(!interlock);
        QCOMPARE(interlock.error(), reason);
    }

    void aNameThatIsAWordOfTheGrammarStandsInQuotes()
    {
        Values values;
        QVERIFY(values.database.add({ScadaObjectType::AnalogPoint, 200009, text("and")}));
        values.take({ScadaObjectType::AnalogPoint, 200009}, 3);
        QCOMPARE(values.check("\"and\" == 3 and \"and\" < 4"), QString());
    }

    void nothingFollowsFromAnUnreliableValue_data()
    {
        QTest::addColumn<qint32>("quality");
        QTest::addColumn<bool>("counts");
        QTest::newRow("good") << qint32(0) << true;
        QTest::newRow("invalid") << qint32(ValueMark::Invalid) << false;
        QTest::newRow("stale") << qint32(ValueMark::Stale) << false;
        QTest::newRow("without communication") << qint32(ValueMark::CommunicationFailed) << false;
        QTest::newRow("substituted") << qint32(ValueMark::Substituted) << true;
        QTest::newRow("estimated") << qint32(ValueMark::Estimated) << true;
        QTest::newRow("stale and substituted") << qint32(ValueMark::Substituted | ValueMark::Stale) << false;
    }
    void nothingFollowsFromAnUnreliableValue()
    {
        QFETCH(qint32, quality);
        QFETCH(bool, counts);
        Values values;
        values.take(level, 20, quality);
        for (const char* condition : {"LEVEL == 20", "LEVEL != 21", "20 == LEVEL", "LEVEL:Value < 21"})
            QCOMPARE(values.check(condition).isEmpty(), counts);
        QCOMPARE(values.check("LEVEL == 20 or PUMP == 1"), QString()); // the other one holds
        QCOMPARE(values.check("LEVEL:HighLimit == 80"), QString());    // a limit is no value
    }

    void theNameOfAnUnreliableStateIsNoStateEither()
    {
        Values values;
        QCOMPARE(values.check("PUMP:StatusName == 1"), QString());
        values.take(pump, 1, ValueMark::Stale);
        QCOMPARE(values.check("PUMP:StatusName == 1"), text("PUMP:StatusName == 1"));
        QCOMPARE(values.check("LEVEL:ValueWithUnit == 20"), QString());
        values.take(level, 20, ValueMark::Invalid);
        QCOMPARE(values.check("LEVEL:ValueWithUnit == 20"), text("LEVEL:ValueWithUnit == 20"));
    }

    void theSameInterlockFollowsTheValues()
    {
        Values values;
        const auto interlock = Interlock::parse(text("LEVEL < 50"));
        QVERIFY(interlock->check(values.database));
        values.take(level, 60);
        QVERIFY(!interlock->check(values.database));
        values.take(level, 60, ValueMark::Stale);
        QVERIFY(!interlock->check(values.database));
        values.take(level, 40);
        QVERIFY(interlock->check(values.database));
    }

    void namesItsTags()
    {
        const auto interlock =
            Interlock::parse(text("LEVEL > 20 and \"TANK 2\" < LEVEL:HighLimit or 1e3 == @R::UNIT:CommState"));
        QVERIFY2(interlock, interlock ? "" : qPrintable(interlock.error()));
        QCOMPARE(interlock->tags(),
                 (QStringList{text("LEVEL"), text("TANK 2"), text("LEVEL:HighLimit"), text("@R::UNIT:CommState")}));
        QVERIFY(Interlock::parse({})->tags().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_Interlock)
#include "tst_interlock.moc"
