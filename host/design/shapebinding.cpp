#include "host/design/shapebinding.h"

#include "host/actions/tagaction.h"
#include "host/shapes/shape.h"
#include "platform/data/tagresolution.h"
#include "scada/hub/canvasscadaactionmanagerinterface.h"

#include <QCoreApplication>

namespace {

// Not a constant, which names no object.
bool isTag(const QString& text)
{
    return Korvane::quickResolveFromString(text).type != Korvane::ScadaObjectType::NoObject;
}

QStringList ruleTags(const TagAction& action)
{
    QStringList tags;
    for (const ActionRule& rule : action.rules()) {
        for (const RuleCondition& part : rule.conditions)
            tags << part.tag << part.bound;
    }
    tags.removeDuplicates();
    return tags;
}

void replaceInRules(TagAction& action, const QString& before, const QString& after)
{
    std::vector<ActionRule> rules = action.rules();
    for (ActionRule& rule : rules) {
        for (RuleCondition& part : rule.conditions) {
            ConditionData data = part.data();
            for (QString* side : {&data.leftTag, &data.rightText}) {
                if (*side == before)
                    *side = after;
            }
            const QByteArray unknown = part.unknownMembers;
            part = RuleCondition(data);
            part.unknownMembers = unknown;
        }
    }
    action.setRules(rules);
}

} // namespace

QString ShapeBinding::purpose() const
{
    if (!isValue())
        return QCoreApplication::translate("ShapeBinding", "%1, condition").arg(action->name());
    if (action->tags().size() == 1)
        return action->name();
    return QCoreApplication::translate("ShapeBinding", "%1, value %2").arg(action->name()).arg(place + 1);
}

std::unique_ptr<TagAction> ShapeBinding::rebound(const QString& newTag) const
{
    std::unique_ptr<TagAction> copy(static_cast<TagAction*>(action->clone(action->shape())));
    if (isValue())
        copy->setTag(place, newTag);
    else
        replaceInRules(*copy, tag, newTag);
    return copy;
}

std::vector<ShapeBinding> ShapeBinding::of(const CanvasScadaActionManagerInterface& actions, const Shape& shape)
{
    std::vector<ShapeBinding> bindings;
    for (ScadaTagActionInterface* each : actions.actionsOf(&shape)) {
        auto* action = dynamic_cast<TagAction*>(each);
        if (!action)
            continue;
        const QStringList tags = action->tags();
        for (int place = 0; place < tags.size(); ++place)
            bindings.push_back({action, place, tags.at(place)});
        for (const QString& tag : ruleTags(*action)) {
            if (isTag(tag))
                bindings.push_back({action, -1, tag});
        }
    }
    return bindings;
}
