#include "scada/binding/scadatagactioninterface.h"

#include "platform/core/tesselinterface.h"
#include "platform/data/apppropertymanager.h"
#include "platform/data/datadispatcher.h"
#include "platform/data/mwdatadepartment.h"
#include "scada/binding/dispatchscratch_p.h"
#include "scada/binding/objecttarget.h"
#include "scada/binding/tlqgraphicsitem.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QGraphicsScene>

namespace {

using Korvane::ScadaObjectType;

qint32 mark(const QuorixData& data, const char* name)
{
    const QuorixValue* value = data.GetValue(name);
    return value ? value->toInt32() : 0;
}

void takeProperty(ObjectTarget& target, KorvaneScadaCoreInterface* core)
{
    AppPropertyManager* properties = core ? core->propertyManager() : nullptr;
    if (properties)
        target.setValue(properties->getProperty(target.getTagString()));
}

} // namespace

ScadaTagActionInterface::ScadaTagActionInterface() = default;

ScadaTagActionInterface::ScadaTagActionInterface(TesselInterface* shape) : m_shape(shape)
{
}

// Kept: a copy has to be pushed onto its shape first, and never shares the overlay.
ScadaTagActionInterface::ScadaTagActionInterface(const ScadaTagActionInterface& other) : m_shape(other.m_shape)
{
}

// Kept: assignment shares the overlay.
ScadaTagActionInterface& ScadaTagActionInterface::operator=(const ScadaTagActionInterface& other) = default;

// Kept: the overlay belongs to the shape's item.
ScadaTagActionInterface::~ScadaTagActionInterface() = default;

void ScadaTagActionInterface::fromStream(const ScadaTagActionStream&, QMap<QString, QVariant>&)
{
}

void ScadaTagActionInterface::geometryChanged(const QTransform&)
{
}

void ScadaTagActionInterface::runItSelf(CanvasScadaActionManagerInterface*, KorvaneScadaCoreInterface*)
{
}

bool ScadaTagActionInterface::interactMouseEvent()
{
    return false;
}

void ScadaTagActionInterface::timeOut()
{
}

void ScadaTagActionInterface::setShape(TesselInterface* shape)
{
    m_shape = shape;
}

bool ScadaTagActionInterface::replaceText(const QString& before, const QString& after)
{
    bool isReplaced = false;
    const DispatchScratch scratch(*this);
    for (ObjectTarget* target : scratch.targets())
        isReplaced |= target->replaceText(before, after);
    return isReplaced;
}

void ScadaTagActionInterface::setTagString(const QString& tag)
{
    const DispatchScratch scratch(*this);
    for (ObjectTarget* target : scratch.targets())
        target->setTagString(tag);
}

void ScadaTagActionInterface::resolve(ScadaRuntimeInterface* runtime)
{
    const DispatchScratch scratch(*this);
    for (ObjectTarget* target : scratch.targets())
        target->resolve(runtime);
}

QString ScadaTagActionInterface::tagName()
{
    QList<ObjectTarget> targets;
    copyTargets(targets);
    return targets.isEmpty() ? QString() : targets.constFirst().getTagString();
}

int ScadaTagActionInterface::tagid()
{
    QList<ObjectTarget> targets;
    copyTargets(targets);
    return targets.isEmpty() ? 0 : targets.constFirst().getPid();
}

void ScadaTagActionInterface::readDataFromSource(KorvaneScadaCoreInterface* core, const MwDataDepartment& batch,
                                                 unsigned char withOverlay)
{
    m_isChanged = false;
    m_isChanged = dispatchValue(core, batch, withOverlay != 0);
}

bool ScadaTagActionInterface::dispatchValue(KorvaneScadaCoreInterface* core, const MwDataDepartment& batch,
                                            bool withOverlay)
{
    const bool isChanged = dispatchToTargets(core, batch, withOverlay);
    if (withOverlay)
        setSourceFail(batch.points.empty());
    return isChanged;
}

bool ScadaTagActionInterface::dispatchToTargets(KorvaneScadaCoreInterface* core, const MwDataDepartment& batch,
                                                bool withOverlay)
{
    DispatchScratch scratch(*this);
    DataDispatcher dispatcher;
    bool isChanged = false;
    for (int place = 0; place < scratch.targets().size(); ++place) {
        ObjectTarget* target = scratch.targets().at(place);
        if (target->getLogDataInfo())
            continue;
        scratch.recordPrevious(place);

        const ScadaObjectType kind = target->objectKindType();
        if (kind == ScadaObjectType::ApplicationProperty) {
            takeProperty(*target, core);
            continue;
        }
        const qint32 id = target->getPid();
        const QuorixData* found = batch.find(kind, id);
        if (!found)
            continue;
        if (target->isMMDataAcceptable()) {
            const QuorixData record = *found;
            isChanged |= updatePointValue(record, kind, static_cast<unsigned int>(id));
            if (withOverlay)
                updateTLQ(record);
        }
        if (target->isDBAcceptable(id)) {
            scratch.recordPrevious(place);
            dispatcher.addTagValue(target);
        }
    }
    dispatcher.dispatch(batch, core ? core->scadaRuntime() : nullptr, core ? core->controller() : nullptr);

    if (isChanged)
        return true;
    // Kept: a logged target has no previous value, so one that holds a value counts as changed with every batch.
    for (int place = 0; place < scratch.targets().size(); ++place) {
        if (!isSameValue(scratch.previous(place), scratch.targets().at(place)->value()))
            return true;
    }
    return false;
}

bool ScadaTagActionInterface::updatePointValue(const QuorixData& data, ScadaObjectType, unsigned int pointId)
{
    bool isChanged = false;
    const auto take = [&](ObjectTarget* target) {
        if (target->isMMDataAcceptable())
            isChanged |= target->setMMValue(&data);
    };
    if (DispatchScratch* walk = DispatchScratch::of(*this)) {
        walk->forEachOf(static_cast<qint32>(pointId), take);
    } else {
        DispatchScratch scratch(*this);
        scratch.forEachOf(static_cast<qint32>(pointId), take);
    }
    return isChanged;
}

void ScadaTagActionInterface::updateDatatoTarget(bool force)
{
    if (!m_isChanged && !force)
        return;
    applyToShape(force);
    m_isChanged = false;
}

void ScadaTagActionInterface::updateRTValue(QuorixData& data, ScadaObjectType kind, unsigned int pointId,
                                            unsigned char withOverlay)
{
    m_isChanged = updatePointValue(data, kind, pointId);
    if (m_isChanged) {
        applyToShape(false);
        m_isChanged = false;
    }
    if (withOverlay != 0)
        updateTLQ(data);
}

bool ScadaTagActionInterface::updatePropertyValue(const QString& name, const QVariant& value)
{
    bool isChanged = false;
    const DispatchScratch scratch(*this);
    for (ObjectTarget* target : scratch.targets()) {
        if (target->objectKindType() != ScadaObjectType::ApplicationProperty || target->getTagString() != name ||
            isSameValue(target->value(), value))
            continue;
        target->setValue(value);
        m_isChanged = true;
        isChanged = true;
    }
    return isChanged;
}

void ScadaTagActionInterface::updateTLQ(const QuorixData& data)
{
    const qint32 tag = mark(data, "tag");
    const qint32 limit = mark(data, "limit");
    const qint32 quality = mark(data, "quality");
    if (tag == 0 && limit == 0 && quality == 0) {
        removeOverlay(); // kept: also while the source has failed
        return;
    }
    createOverlay();
    if (m_overlay)
        m_overlay->setTlq(tag, limit, quality);
}

void ScadaTagActionInterface::setSourceFail(bool fail)
{
    if (fail)
        createOverlay();
    else if (m_overlay && m_overlay->isNoTLQ())
        removeOverlay();
    if (m_overlay)
        m_overlay->setSourceFail(fail);
}

void ScadaTagActionInterface::setDisplayTlq(bool visible)
{
    if (m_overlay)
        m_overlay->setVisible(visible);
}

void ScadaTagActionInterface::createOverlay()
{
    QGraphicsItem* item = m_shape && !m_overlay ? m_shape->graphicsItem() : nullptr;
    if (!item)
        return;
    m_overlay = new TlqGraphicsItem(item);
    m_overlay->setRect(m_shape->namedProperty(QStringLiteral("Geometry")).toRectF());
}

void ScadaTagActionInterface::removeOverlay()
{
    if (!m_overlay)
        return;
    if (QGraphicsScene* scene = m_overlay->scene())
        scene->removeItem(m_overlay);
    delete m_overlay;
    m_overlay = nullptr;
}
