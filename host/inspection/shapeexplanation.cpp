#include "host/inspection/shapeexplanation.h"

#include "host/actions/canvasactionmanager.h"
#include "host/actions/tagaction.h"
#include "host/canvas/page.h"
#include "host/inspection/markstext.h"
#include "host/runtime/runtimedatabase.h"
#include "host/shapes/shape.h"
#include "scada/binding/objecttarget.h"

#include <QStringList>

namespace {

QString layerState(const Shape& shape)
{
    const auto* layer = static_cast<const Layer*>(const_cast<Shape&>(shape).layer());
    if (!layer)
        return {};
    QString text = QStringLiteral("layer \"%1\"").arg(layer->name());
    if (!layer->isVisible())
        text += QStringLiteral(", which is switched off");
    else if (!layer->areMarksShown())
        text += QStringLiteral(", whose quality marks are switched off");
    return text;
}

QString describeTarget(const ObjectTarget& target, const RuntimeDatabase& database)
{
    const ObjectKey key{target.objectKindType(), target.getPid()};
    const QVariant& value = target.value();
    const QString shown = value.isValid() ? value.toString() : QStringLiteral("(no value yet)");
    if (key.type == Korvane::ScadaObjectType::NoObject)
        return target.getTagString().isEmpty() ? QStringLiteral("    no tag")
                                               : QStringLiteral("    constant %1").arg(target.getTagString());
    if (key.type == Korvane::ScadaObjectType::ApplicationProperty)
        return QStringLiteral("    property %1 = %2").arg(target.getTagString(), shown);
    if (!key.isValid())
        return QStringLiteral("    tag %1: names no known object").arg(target.getTagString());
    const QuorixData record = database.presentRecord(key);
    const QuorixValue* time = record.GetValue("time");
    const QString field = target.field() ? QLatin1Char(':') + QLatin1String(target.field()->name) : QString();
    return QStringLiteral("    tag %1%2 (id %3) = %4, time %5, marks %6")
        .arg(target.getTagString(), field, QString::number(key.id), shown,
             time ? time->toVariant().toDateTime().toString(Qt::ISODateWithMs) : QStringLiteral("(none)"),
             marksText(record));
}

QString describeChange(const CanvasActionManager& manager, const ScadaTagActionInterface* action)
{
    const CanvasActionManager::LastChange change = manager.lastChange(action);
    if (!change.time.isValid())
        return QStringLiteral("    not changed since the page was opened");
    if (change.batch == 0)
        return QStringLiteral("    last changed by itself, not by a batch, at %1")
            .arg(change.time.toString(Qt::ISODateWithMs));
    return QStringLiteral("    last changed by batch %1 at %2, %3 times in all")
        .arg(QString::number(change.batch), change.time.toString(Qt::ISODateWithMs),
             QString::number(manager.changeCount(action)));
}

} // namespace

QString explainShape(const Page& page, const Shape& shape, const RuntimeDatabase& database)
{
    QStringList lines;
    lines.append(QStringLiteral("%1 \"%2\" on page \"%3\"")
                     .arg(shape.shapeClass().name, shape.name(), page.canvas->canvasName()));
    lines.append(layerState(shape));
    if (page.actions->isSourceFailed())
        lines.append(QStringLiteral("the data source has failed: values are the last ones, conditions are undone"));
    const auto actions = page.actions->actionsOf(&shape);
    if (actions.isEmpty())
        lines.append(QStringLiteral("no bindings: it looks as it was drawn"));
    const auto* manager = dynamic_cast<const CanvasActionManager*>(page.actions.get());
    int number = 0;
    for (ScadaTagActionInterface* action : actions) {
        lines.append(QStringLiteral("binding %1: %2").arg(++number).arg(action->name()));
        QList<ObjectTarget*> targets;
        action->collectTargets(targets);
        for (const ObjectTarget* target : qAsConst(targets))
            lines.append(describeTarget(*target, database));
        if (const auto* known = dynamic_cast<const TagAction*>(action); known && !known->rules().empty()) {
            const QString matched = known->matchedCondition();
            if (known->isSourceFailed())
                lines.append(QStringLiteral("    conditions are undone: their source has failed"));
            else
                lines.append(matched.isEmpty() ? QStringLiteral("    no condition holds")
                                               : QStringLiteral("    condition that holds: ") + matched);
        }
        if (manager)
            lines.append(describeChange(*manager, action));
    }
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}
