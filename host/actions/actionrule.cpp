#include "host/actions/actionrule.h"

RuleCondition::RuleCondition(const ConditionData& data) : condition(data), tag(data.leftTag), bound(data.rightText)
{
    // Records tell null texts from empty ones, page files don't.
    if (tag.isEmpty())
        tag = QString();
    if (bound.isEmpty())
        bound = QString();
    condition.lValue()->setTagString(tag);
    condition.rValue()->setTagString(bound);
}

RuleCondition::RuleCondition(const ScadaCondition& stored) : condition(stored)
{
    tag = condition.lValue()->getTagString();
    bound = condition.rValue()->getTagString();
}

QString RuleCondition::text() const
{
    return QStringLiteral("%1 %2 %3").arg(tag, condition.opString(), bound);
}

ConditionData RuleCondition::data() const
{
    return {tag, bound, condition.opType(), condition.logicType()};
}

bool ActionRule::holds() const
{
    bool doesAnyHold = false;
    bool doAllHold = true; // of the conditions joined by "and" up to here
    bool isOpen = false;
    for (const RuleCondition& part : conditions) {
        doAllHold = doAllHold && part.condition.hasBothValues() && part.condition.checkCondition();
        isOpen = true;
        if (part.condition.logicType() == Korvane::LogicType::And)
            continue;
        doesAnyHold |= doAllHold;
        if (part.condition.logicType() != Korvane::LogicType::Or)
            return doesAnyHold;
        doAllHold = true;
        isOpen = false;
    }
    return doesAnyHold || (isOpen && doAllHold); // the last link joins to nothing
}

QString ActionRule::text() const
{
    QString text;
    for (std::size_t place = 0; place < conditions.size(); ++place) {
        text += conditions[place].text();
        const QString link = conditions[place].condition.logicString();
        if (link.isEmpty() || place + 1 == conditions.size())
            break;
        text += QLatin1Char(' ') + link + QLatin1Char(' ');
    }
    return text;
}
