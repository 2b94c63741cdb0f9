#include "host/checking/rulecheck.h"

#include "host/checking/valuerange.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/tagresolution.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace {

using Korvane::OpType;
using Korvane::ScadaObjectType;
using RuleCheck::Found;

/// Conditions that are joined by "and".
struct Group
{
    int firstCondition = 0;
    std::map<QString, ValueRange> ranges; ///< by object and field
    std::set<QString> others;             ///< comparisons of two tags
    bool isEmpty() const
    {
        return std::any_of(ranges.begin(), ranges.end(), [](const auto& each) { return each.second.isEmpty(); });
    }
    /// Whether \p other holds whenever this does.
    bool implies(const Group& other) const
    {
        const auto isImplied = [this](const auto& wanted) {
            const auto own = ranges.find(wanted.first);
            return own != ranges.end() && own->second.isWithin(wanted.second);
        };
        return std::all_of(other.ranges.begin(), other.ranges.end(), isImplied) &&
               std::includes(others.begin(), others.end(), other.others.begin(), other.others.end());
    }
};

/// One side of a comparison.
struct Side
{
    QString key; ///< the same for all ways to write a tag
    bool isConstant = false;
    double constant = 0;
    ScadaObjectType type = ScadaObjectType::NoObject;
    const RuntimeDatabase::Object* object = nullptr;
    bool isPresentValue = false; ///< not one of the object's other fields
};

OpType mirrored(OpType operation)
{
    switch (operation) {
    case OpType::Less:
        return OpType::Greater;
    case OpType::LessOrEqual:
        return OpType::GreaterOrEqual;
    case OpType::Greater:
        return OpType::Less;
    case OpType::GreaterOrEqual:
        return OpType::LessOrEqual;
    case OpType::Equal:
    case OpType::NotEqual:
        break;
    }
    return operation;
}

class Check
{
public:
    Check(const std::vector<ActionRule>& rules, const RuntimeDatabase& database) : m_rules(rules), m_database(database)
    {
    }

    std::vector<Found> run();

private:
    Side side(const QString& tag) const;
    std::vector<Group> groupsOf(int rule);
    void take(Group& group, const RuleCondition& condition, int rule, int number);
    void checkStates(const Side& tag, OpType operation, double bound, int rule, int number);
    int coveringRule(const Group& group, int rule) const;
    void checkReach(int rule);

    const std::vector<ActionRule>& m_rules;
    const RuntimeDatabase& m_database;
    std::vector<std::vector<Group>> m_groups; ///< by rule
    std::vector<Found> m_found;
};

Side Check::side(const QString& tag) const
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, &m_database);
    Side side;
    side.type = link.type;
    if (link.type == ScadaObjectType::NoObject) {
        side.constant = static_cast<float>(tag.toDouble(&side.isConstant)); // as conditions compare
        side.key = tag;
        return side;
    }
    const bool isValue = link.field.isEmpty() || link.field == Korvane::dtFieldToString(DataCode::DataField::Value);
    side.object = m_database.object({link.type, link.id});
    side.isPresentValue = isValue;
    const QString name = side.object ? Korvane::tagPrefix(link.type) + side.object->name : tag;
    side.key = isValue ? name : name + QLatin1Char(':') + link.field;
    return side;
}

std::vector<Group> Check::groupsOf(int rule)
{
    std::vector<Group> groups;
    bool isOpen = false;
    int number = 0;
    for (const RuleCondition& condition : m_rules[static_cast<std::size_t>(rule)].conditions) {
        if (!isOpen) {
            groups.emplace_back();
            groups.back().firstCondition = number;
        }
        take(groups.back(), condition, rule, number++);
        isOpen = condition.condition.logicType() == Korvane::LogicType::And;
        if (!isOpen && condition.condition.logicType() != Korvane::LogicType::Or)
            break; // what follows is joined to nothing
    }
    return groups;
}

void Check::take(Group& group, const RuleCondition& condition, int rule, int number)
{
    Side left = side(condition.tag);
    Side right = side(condition.bound);
    OpType operation = condition.condition.opType();
    if (left.isConstant && !right.isConstant) {
        std::swap(left, right);
        operation = mirrored(operation);
    }
    if (!right.isConstant) {
        group.others.insert(QStringLiteral("%1 %2 %3").arg(left.key, condition.condition.opString(), right.key));
        return;
    }
    const bool isWhole = left.type == ScadaObjectType::DigitalPoint && left.isPresentValue;
    ValueRange& range = group.ranges.emplace(left.key, ValueRange(isWhole)).first->second;
    if (left.isConstant)
        range.take(OpType::Equal, left.constant); // one number with another
    range.take(operation, right.constant);
    checkStates(left, operation, right.constant, rule, number);
}

// A comparison that all states answer alike was meant for another point.
void Check::checkStates(const Side& tag, OpType operation, double bound, int rule, int number)
{
    if (tag.type != ScadaObjectType::DigitalPoint || !tag.isPresentValue || !tag.object ||
        tag.object->states.size() < 2)
        return;
    const int last = tag.object->states.size() - 1;
    ValueRange states(true);
    states.take(OpType::GreaterOrEqual, 0);
    states.take(OpType::LessOrEqual, last);
    ValueRange compared(true);
    compared.take(operation, bound);
    ValueRange both = states;
    both.take(operation, bound);
    const bool isAlways = states.isWithin(compared);
    if (!isAlways && !both.isEmpty())
        return;
    m_found.push_back(
        {Finding::Severity::Warning, "state-out-of-range", rule, number,
         QStringLiteral("\"%1\" %2, since \"%3\" has the states 0 to %4")
             .arg(m_rules[static_cast<std::size_t>(rule)].conditions[static_cast<std::size_t>(number)].text(),
                  isAlways ? QStringLiteral("always holds") : QStringLiteral("never holds"), tag.key)
             .arg(last)});
}

/// The rule before \p rule that holds whenever \p group does; -1 for none.
int Check::coveringRule(const Group& group, int rule) const
{
    const auto covers = [&group](const Group& other) { return !other.isEmpty() && group.implies(other); };
    for (int earlier = 0; earlier < rule; ++earlier) {
        const std::vector<Group>& others = m_groups[static_cast<std::size_t>(earlier)];
        if (std::any_of(others.begin(), others.end(), covers))
            return earlier;
    }
    return -1;
}

void Check::checkReach(int rule)
{
    const QString text = m_rules[static_cast<std::size_t>(rule)].text();
    bool isReached = false;
    int covering = -1;
    for (const Group& group : m_groups[static_cast<std::size_t>(rule)]) {
        if (group.isEmpty()) {
            m_found.push_back(
                {Finding::Severity::Error, "never-holds", rule, group.firstCondition,
                 QStringLiteral("\"%1\": conditions contradict each other, so they never hold").arg(text)});
            continue;
        }
        covering = coveringRule(group, rule);
        isReached |= covering < 0;
    }
    if (isReached || covering < 0)
        return;
    m_found.push_back({Finding::Severity::Error, "unreachable-rule", rule, 0,
                       QStringLiteral("\"%1\" never decides: whenever it holds, rule %2 before it does (\"%3\")")
                           .arg(text)
                           .arg(covering + 1)
                           .arg(m_rules[static_cast<std::size_t>(covering)].text())});
}

std::vector<Found> Check::run()
{
    for (int rule = 0; rule < static_cast<int>(m_rules.size()); ++rule)
        m_groups.push_back(groupsOf(rule));
    for (int rule = 0; rule < static_cast<int>(m_rules.size()); ++rule)
        checkReach(rule);
    return std::move(m_found);
}

} // namespace

std::vector<Found> RuleCheck::run(const std::vector<ActionRule>& rules, const RuntimeDatabase& database)
{
    return Check(rules, database).run();
}
