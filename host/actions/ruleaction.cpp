#include "host/actions/ruleaction.h"

#include "platform/core/tesselinterface.h"

QStringList RuleAction::drivenProperties() const
{
    QStringList names;
    for (const ActionRule& rule : rules()) {
        for (auto property = rule.set.begin(); property != rule.set.end(); ++property) {
            if (!names.contains(property.key()))
                names.append(property.key());
        }
    }
    return names;
}

const ActionRule* RuleAction::matchedRule() const
{
    if (isSourceFailed())
        return nullptr;
    for (const ActionRule& rule : rules()) {
        if (rule.holds())
            return &rule;
    }
    return nullptr;
}

QString RuleAction::matchedCondition() const
{
    const ActionRule* rule = matchedRule();
    return rule ? rule->text() : QString();
}

void RuleAction::runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface* core)
{
    TagAction::runItSelf(manager, core);
    m_drawn.clear();
    if (!shape())
        return;
    for (const QString& name : drivenProperties())
        m_drawn.insert(name, shape()->namedProperty(name));
}

void RuleAction::show(const QVariantMap& set)
{
    // Without anything to take back, the shape is left to the other actions that it has.
    if (!shape() || (set.isEmpty() && !m_isShowing))
        return;
    m_isShowing = !set.isEmpty();
    for (auto property = m_drawn.begin(); property != m_drawn.end(); ++property)
        shape()->setNamedProperty(property.key(), set.value(property.key(), property.value()));
}

void RuleAction::applyToShape(bool)
{
    const ActionRule* rule = matchedRule();
    show(rule ? rule->set : QVariantMap());
}
