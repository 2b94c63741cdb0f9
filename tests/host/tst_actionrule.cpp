#include "host/actions/actionrule.h"

#include <QtTest>

using Korvane::LogicType;
using Korvane::OpType;

namespace {

/// A condition that holds ('1'), one that does not ('0'), or one whose value was never seen ('?').
RuleCondition conditionOf(QChar kind, LogicType link)
{
    RuleCondition part(ConditionData{QStringLiteral("P"), QStringLiteral("5"), OpType::Greater, link});
    part.condition.rValue()->setValue(5.0);
    if (kind != QLatin1Char('?'))
        part.condition.lValue()->setValue(kind == QLatin1Char('1') ? 6.0 : 4.0);
    return part;
}

/// "1&0|1" with '&' for "and", '|' for "or", '.' for no link and '#' for a link of no known number; the last one may
/// stand at the end.
ActionRule ruleOf(const QString& chain)
{
    ActionRule rule;
    for (int place = 0; place < chain.size(); place += 2) {
        LogicType link = LogicType::None;
        const QChar sign = place + 1 < chain.size() ? chain.at(place + 1) : QLatin1Char('.');
        if (sign == QLatin1Char('&'))
            link = LogicType::And;
        else if (sign == QLatin1Char('|'))
            link = LogicType::Or;
        else if (sign == QLatin1Char('#'))
            link = static_cast<LogicType>(7);
        rule.conditions.push_back(conditionOf(chain.at(place), link));
    }
    return rule;
}

} // namespace

class tst_ActionRule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whetherAChainHolds_data()
    {
        QTest::addColumn<QString>("chain");
        QTest::addColumn<bool>("holds");
        const auto row = [](const char* name, const char* chain, bool holds) {
            QTest::newRow(name) << QString::fromLatin1(chain) << holds;
        };
        row("without conditions it does not hold", "", false);
        row("one that holds is enough", "1", true);
        row("one that does not hold", "0", false);
        row("one that was never seen does not hold", "?", false);
        row("both of two", "1&1", true);
        row("not the second", "1&0", false);
        row("not the first", "0&1", false);
        row("either of two: the first", "1|0", true);
        row("either of two: the second", "0|1", true);
        row("neither of two", "0|0", false);
        row("and binds closer, in front", "1&1|0", true);
        row("and binds closer, behind", "1|0&0", true);
        row("and binds closer, behind one that fails", "0|1&0", false);
        row("and binds closer on both sides: the first pair", "1&1|1&0", true);
        row("and binds closer on both sides: the second pair", "0&1|1&1", true);
        row("and binds closer on both sides: no pair", "1&0|0&1", false);
        row("the middle of three decides both pairs", "1&0&1", false);
        row("three of three", "1&1&1", true);
        row("the last of a long chain", "0|0|0|0|1", true);
        row("a failed pair does not spoil the next one", "1&0|1", true);
        row("a link of the last condition joins it to nothing: and", "1&", true);
        row("a link of the last condition joins it to nothing: or", "1|", true);
        row("a link of the last condition saves it not: and", "0&", false);
        row("a link of the last condition saves it not: or", "0|", false);
        row("a failed pair with a dangling or", "1&0|", false);
        row("a good pair with a dangling and", "0|1&1&", true);
        row("behind a condition without a link nothing counts", "0.1", false);
        row("behind a condition without a link nothing spoils", "1.0", true);
        row("a chain that ends early has its links", "1&0.1", false);
        row("a link of no known number ends the chain", "0#1", false);
        row("a link of no known number keeps what was found", "1|0#1", true);
        row("one that was never seen spoils a pair", "1&?", false);
        row("one that was never seen does not spoil the other way", "?|1", true);
        row("one that was never seen in front of a pair", "?&1|1&1", true);
    }
    void whetherAChainHolds()
    {
        QFETCH(QString, chain);
        QFETCH(bool, holds);
        QCOMPARE(ruleOf(chain).holds(), holds);
    }

    // Every chain of up to five conditions, against the rule as it reads: it holds when all of the conditions of one of
    // the groups between "or" do.
    void everyShortChain()
    {
        for (int count = 1; count <= 5; ++count) {
            for (int values = 0; values < 1 << count; ++values) {
                for (int links = 0; links < 1 << (count - 1); ++links) {
                    QString chain;
                    for (int place = 0; place < count; ++place) {
                        chain += QLatin1Char(values >> place & 1 ? '1' : '0');
                        if (place + 1 < count)
                            chain += QLatin1Char(links >> place & 1 ? '&' : '|');
                    }
                    bool holds = false;
                    for (const QString& group : chain.split(QLatin1Char('|')))
                        holds |= !group.contains(QLatin1Char('0'));
                    QVERIFY2(ruleOf(chain).holds() == holds, qPrintable(chain));
                }
            }
        }
    }

    void aValueThatWasNeverSeenIsNoZero()
    {
        RuleCondition part(ConditionData{QStringLiteral("P"), QStringLiteral("5"), OpType::Less});
        part.condition.rValue()->setValue(5.0);
        ActionRule rule;
        rule.conditions = {part};
        QVERIFY(!rule.holds()); // 0 would
        rule.conditions[0].condition.lValue()->setValue(0);
        QVERIFY(rule.holds());
    }

    void anUnknownBoundHoldsNothing()
    {
        RuleCondition part(ConditionData{QStringLiteral("P"), QStringLiteral("Q"), OpType::Greater});
        part.condition.lValue()->setValue(1.0);
        ActionRule rule;
        rule.conditions = {part};
        QVERIFY(!rule.holds());
        rule.conditions[0].condition.rValue()->setValue(0.5);
        QVERIFY(rule.holds());
    }

    void whatARuleSays_data()
    {
        QTest::addColumn<QString>("chain");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const char* chain, const char* text) {
            QTest::newRow(name) << QString::fromLatin1(chain) << QString::fromLatin1(text);
        };
        row("nothing without conditions", "", "");
        row("one condition", "1", "P > 5");
        row("two conditions", "1&1", "P > 5 && P > 5");
        row("three conditions", "1|1&1", "P > 5 || P > 5 && P > 5");
        row("the last link is not written", "1&1|", "P > 5 && P > 5");
        row("what no link reaches is not written", "1|1.1", "P > 5 || P > 5");
        row("an unknown link ends the text", "1#1", "P > 5");
    }
    void whatARuleSays()
    {
        QFETCH(QString, chain);
        QFETCH(QString, text);
        QCOMPARE(ruleOf(chain).text(), text);
    }

    void everyOperatorIsWritten()
    {
        const QStringList signs{QStringLiteral("=="), QStringLiteral("<"),  QStringLiteral("<="),
                                QStringLiteral(">"),  QStringLiteral(">="), QStringLiteral("!=")};
        for (int code = 0; code < signs.size(); ++code) {
            const RuleCondition part(
                ConditionData{QStringLiteral("P"), QStringLiteral("5"), static_cast<OpType>(code)});
            QCOMPARE(part.text(), QStringLiteral("P %1 5").arg(signs.at(code)));
        }
    }

    void textsStayAsWrittenWhenResolved()
    {
        RuleCondition part(ConditionData{QStringLiteral("@R::UNIT:CommState"), QStringLiteral("P:HighLimit"),
                                         OpType::NotEqual, LogicType::Or});
        part.condition.lValue()->resolve(nullptr);
        part.condition.rValue()->resolve(nullptr);
        QCOMPARE(part.condition.lValue()->getTagString(), QStringLiteral("UNIT"));
        QCOMPARE(part.text(), QStringLiteral("@R::UNIT:CommState != P:HighLimit"));
        const ConditionData data = part.data();
        QCOMPARE(data.leftTag, QStringLiteral("@R::UNIT:CommState"));
        QCOMPARE(data.rightText, QStringLiteral("P:HighLimit"));
        QVERIFY(data.operation == OpType::NotEqual);
        QVERIFY(data.logic == LogicType::Or);
    }

    void aPlaceInATagStaysText()
    {
        const RuleCondition part(ConditionData{QStringLiteral("%2"), QStringLiteral("%1"), OpType::Equal});
        QCOMPARE(part.text(), QStringLiteral("%2 == %1"));
    }

    void aStoredConditionKeepsItsTexts()
    {
        const RuleCondition part(
            ScadaCondition(ConditionData{QStringLiteral("P:HighLimit"), QStringLiteral("5"), OpType::Less}));
        QCOMPARE(part.tag, QStringLiteral("P:HighLimit"));
        QCOMPARE(part.bound, QStringLiteral("5"));
    }

    void emptyTextsAreAlike()
    {
        const RuleCondition part(ConditionData{QLatin1String(""), QLatin1String("")});
        QVERIFY(part.tag.isNull() && part.bound.isNull());
        QVERIFY(ScadaCondition(part.condition).lValue()->getTagString().isNull());
    }
};

QTEST_GUILESS_MAIN(tst_ActionRule)
#include "tst_actionrule.moc"
