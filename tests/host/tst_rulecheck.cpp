#include "host/checking/rulecheck.h"
#include "host/runtime/runtimedatabase.h"

#include <QtTest>

using Korvane::LogicType;
using Korvane::OpType;
using Korvane::ScadaObjectType;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

OpType operatorOf(const QString& word)
{
    const QStringList words = {text("=="), text("<"), text("<="), text(">"), text(">="), text("!=")};
    return static_cast<OpType>(words.indexOf(word));
}

/// "A > 1 && B < 2 || A == 3".
ActionRule rule(const QString& written)
{
    ActionRule made;
    const QStringList words = written.split(QLatin1Char(' '));
    for (int at = 0; at + 2 < words.size(); at += 4) {
        const QString link = words.value(at + 3);
        const LogicType logic = link == text("&&")   ? LogicType::And
                                : link == text("||") ? LogicType::Or
                                                     : LogicType::None;
        made.conditions.emplace_back(ConditionData{words[at], words[at + 2], operatorOf(words[at + 1]), logic});
    }
    return made;
}

} // namespace

class tst_RuleCheck : public QObject
{
    Q_OBJECT

public:
    tst_RuleCheck()
    {
        add({ScadaObjectType::AnalogPoint, 200001, text("A")});
        add({ScadaObjectType::AnalogPoint, 200002, text("B")});
        RuntimeDatabase::Object valve{ScadaObjectType::DigitalPoint, 100001, text("D")};
        valve.states = QStringList{text("Closed"), text("Open"), text("Moving")};
        add(valve);
        add({ScadaObjectType::DigitalPoint, 100002, text("PLAIN")});
    }

private Q_SLOTS:
    void rulesAreJudgedWithoutValues_data()
    {
        QTest::addColumn<QString>("rules");
        QTest::addColumn<QString>("found"); ///< "code@rule.condition", joined by blanks
        const auto row = [](const char* name, const char* rules, const char* found) {
            QTest::newRow(name) << text(rules) << text(found);
        };
        row("bounds that leave something", "A > 3 && A < 5", "");
        row("bounds that contradict each other", "A > 5 && A < 3", "never-holds@0.0");
        row("an end that both exclude", "A > 5 && A < 5", "never-holds@0.0");
        row("an end that one excludes", "A >= 5 && A < 5", "never-holds@0.0");
        row("an end that both include", "A >= 5 && A <= 5", "");
        row("two equalities", "A == 5 && A == 6", "never-holds@0.0");
        row("equal and not equal", "A == 5 && A != 5", "never-holds@0.0");
        row("the two of different points", "A > 5 && B < 3", "");
        row("different fields of a point", "A:HighLimit > 5 && A < 3", "");
        row("a point by its id", "#200001 > 5 && A < 3", "never-holds@0.0");
        row("a constant on the left", "5 < A && A < 3", "never-holds@0.0");
        row("only one of the alternatives", "A > 5 || B > 5 && B < 3", "never-holds@0.1");
        row("nothing between two whole states", "PLAIN > 0 && PLAIN < 1", "never-holds@0.0");
        row("something between two numbers", "A > 0 && A < 1", "");
        row("bounds that are one number in single precision", "A > 16777216 && A < 16777217", "never-holds@0.0");
        row("a comparison with no number", "A == nan", "never-holds@0.0");
        row("two constants", "1 > 2", "never-holds@0.0");

        row("the same rule again", "A > 5;A > 5", "unreachable-rule@1.0");
        row("a stronger one behind a weaker one", "A > 5;A > 6", "unreachable-rule@1.0");
        row("a weaker one behind a stronger one", "A > 6;A > 5", "");
        row("more conditions behind fewer", "A > 5;A > 5 && B < 1", "unreachable-rule@1.0");
        row("fewer conditions behind more", "A > 5 && B < 1;A > 5", "");
        row("the end behind without the end", "A > 5;A >= 5", "");
        row("without the end behind the end", "A >= 5;A > 5", "unreachable-rule@1.0");
        row("an equality behind a range", "A < 10;B > 1;A == 3", "unreachable-rule@2.0");
        row("an equality behind what excludes it", "A != 3;A == 3", "");
        row("each alternative behind another rule", "A > 5;B > 5;A > 6 || B > 6", "unreachable-rule@2.0");
        row("one alternative that nothing covers", "A > 5;A > 6 || B > 6", "");
        row("a rule behind one that never holds", "A > 5 && A < 3;A > 6", "never-holds@0.0");
        row("two tags compared twice", "A > B;A > B", "unreachable-rule@1.0");
        row("two tags compared in another way", "A > B;A < B", "");

        row("a state that there is", "D == 2", "");
        row("a state that there is not", "D == 3", "state-out-of-range@0.0");
        row("a negative state", "D < 0", "state-out-of-range@0.0");
        row("what all states are", "D != 7", "state-out-of-range@0.0");
        row("above the last state", "D <= 2", "state-out-of-range@0.0");
        row("some of the states", "D > 1", "");
        row("a field of a point with states", "D:TodayMaximum == 3", "");
        row("a point whose states have no names", "PLAIN == 3", "");
    }
    void rulesAreJudgedWithoutValues()
    {
        QFETCH(const QString, rules);
        QFETCH(const QString, found);
        std::vector<ActionRule> made;
        for (const QString& each : rules.split(QLatin1Char(';')))
            made.push_back(rule(each));
        QStringList codes;
        for (const RuleCheck::Found& each : RuleCheck::run(made, m_database))
            codes.append(text("%1@%2.%3").arg(QLatin1String(each.code)).arg(each.rule).arg(each.condition));
        codes.sort();
        QStringList wanted = found.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        wanted.sort();
        QCOMPARE(codes.join(QLatin1Char(' ')), wanted.join(QLatin1Char(' ')));
    }

    void whatIsBehindAMissingLinkIsNotLookedAt()
    {
        ActionRule broken = rule(text("A > 5 && A > 6"));
        broken.conditions[0] = RuleCondition(ConditionData{text("A"), text("5"), OpType::Greater, LogicType::None});
        broken.conditions[1] = RuleCondition(ConditionData{text("A"), text("3"), OpType::Less, LogicType::None});
        QVERIFY(RuleCheck::run({broken}, m_database).empty());
    }

private:
    void add(const RuntimeDatabase::Object& object)
    {
        if (const auto added = m_database.add(object); !added)
            qFatal("%s", qPrintable(added.error()));
    }

    RuntimeDatabase m_database;
};

QTEST_GUILESS_MAIN(tst_RuleCheck)
#include "tst_rulecheck.moc"
