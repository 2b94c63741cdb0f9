#include "host/actions/canvasactionmanager.h"

#include "host/actions/tagaction.h"
#include "host/shapes/shape.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QPointer>
#include <QSet>

#include <algorithm>
#include <utility>

using Korvane::ScadaObjectType;

namespace {

bool isBound(const QList<ObjectTarget*>& targets, ObjectKey object)
{
    return std::any_of(targets.begin(), targets.end(), [object](const ObjectTarget* target) {
        return ObjectKey{target->objectKindType(), target->getPid()} == object;
    });
}

// NaN is never the same as itself: an action that holds one counts as changed with every batch.
bool hasValueUnlikeItself(ScadaTagActionInterface& action)
{
    QList<ObjectTarget*> targets;
    action.collectTargets(targets);
    return std::any_of(targets.begin(), targets.end(),
                       [](const ObjectTarget* target) { return target->value() != target->value(); });
}

} // namespace

CanvasActionManager::CanvasActionManager(KVCanvasInterface* canvas, KorvaneScadaCoreInterface* hub, QObject* parent)
    : CanvasScadaActionManagerInterface(parent), m_canvas(canvas), m_hub(hub)
{
}

CanvasActionManager::~CanvasActionManager() = default;

// Page

void CanvasActionManager::open(ScadaRuntimeInterface* runtime)
{
    if (m_state != State::New)
        return;
    m_state = State::Open;
    for (int place = 0; place < entryCount(); ++place)
        entryAt(place).action->resolve(runtime);
    // All of them see the shapes as they were drawn before the first sets anything.
    for (int place = 0; place < entryCount(); ++place)
        entryAt(place).action->runItSelf(this, m_hub);
    refreshAll();
    if (m_isShown && m_presentRecords)
        bringUpToDate();
}

void CanvasActionManager::close()
{
    m_state = State::Closed;
}

void CanvasActionManager::setShown(bool shown)
{
    if (shown == m_isShown)
        return;
    m_isShown = shown;
    if (shown && isOpen())
        bringUpToDate();
}

void CanvasActionManager::bringUpToDate()
{
    m_isPassedToAll = true; // batches were missed
    if (m_presentRecords) {
        for (const MwDataDepartment& batch : m_presentRecords(boundObjects()))
            takeBatch(batch);
    }
    refreshAll();
}

// Actions

void CanvasActionManager::addAction(ScadaTagActionInterface* action)
{
    if (!action || m_known.contains(action))
        return;
    m_known.insert(action);
    m_entries.push_back({});
    Entry& entry = m_entries.back();
    entry.action.reset(action);
    entry.known = dynamic_cast<TagAction*>(action);
    m_index.isMade = false;
    if (!isOpen())
        return;
    action->resolve(m_hub ? m_hub->scadaRuntime() : nullptr);
    action->runItSelf(this, m_hub);
    push(entry, true);
    m_isPassedToAll = true; // what overlay it brings along is not known
}

bool CanvasActionManager::takeAction(ScadaTagActionInterface* action)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [action](const Entry& entry) { return entry.action.get() == action; });
    if (!action || found == m_entries.end())
        return false;
    dropOverlay(*action);
    static_cast<void>(found->action.release()); // the caller's now
    m_known.remove(action);
    m_entries.erase(found);
    m_index.isMade = false;
    return true;
}

template <typename Doomed>
void CanvasActionManager::removeIf(const Doomed& isDoomed)
{
    for (Entry& entry : m_entries) {
        if (!isDoomed(entry))
            continue;
        dropOverlay(*entry.action);
        m_known.remove(entry.action.get());
    }
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), isDoomed), m_entries.end());
    m_index.isMade = false;
}

void CanvasActionManager::removeActionsOf(const TesselInterface* shape)
{
    removeIf([shape](const Entry& entry) { return entry.action->shape() == shape; });
}

void CanvasActionManager::clear()
{
    removeIf([](const Entry&) { return true; });
}

// A record without marks is what takes an overlay off.
void CanvasActionManager::dropOverlay(ScadaTagActionInterface& action)
{
    action.updateTLQ(QuorixData());
}

QList<ScadaTagActionInterface*> CanvasActionManager::actions() const
{
    QList<ScadaTagActionInterface*> all;
    all.reserve(static_cast<int>(m_entries.size()));
    for (const Entry& entry : m_entries)
        all.append(entry.action.get());
    return all;
}

QList<ScadaTagActionInterface*> CanvasActionManager::actionsOf(const TesselInterface* shape) const
{
    QList<ScadaTagActionInterface*> found;
    for (const Entry& entry : m_entries) {
        if (entry.action->shape() == shape)
            found.append(entry.action.get());
    }
    return found;
}

QList<ScadaTagActionInterface*> CanvasActionManager::actionsBoundTo(ObjectKey object) const
{
    QList<ScadaTagActionInterface*> found;
    const auto take = [&](const Entry& entry) {
        if (isBound(targetsOf(*entry.action), object))
            found.append(entry.action.get());
    };
    if (!isIndexCurrent()) {
        std::for_each(m_entries.begin(), m_entries.end(), take);
        return found;
    }
    std::vector<int> places = m_index.always;
    if (const IdMap<std::vector<int>>* family = indexOf(object.type)) {
        const auto bound = family->find(static_cast<quint32>(object.id));
        if (bound != family->end())
            places.insert(places.end(), bound->second.begin(), bound->second.end());
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    for (const int place : places)
        take(m_entries[static_cast<std::size_t>(place)]);
    return found;
}

bool CanvasActionManager::moveAction(const TesselInterface* shape, int from, int to)
{
    std::vector<std::size_t> places;
    for (std::size_t place = 0; place < m_entries.size(); ++place) {
        if (m_entries[place].action->shape() == shape)
            places.push_back(place);
    }
    const int count = static_cast<int>(places.size());
    if (from < 0 || from >= count || to < 0 || to >= count)
        return false;
    const int step = from < to ? 1 : -1;
    for (int place = from; place != to; place += step)
        std::swap(m_entries[places[static_cast<std::size_t>(place)]],
                  m_entries[places[static_cast<std::size_t>(place) + static_cast<std::size_t>(step)]]);
    m_index.isMade = false;
    return true;
}

// Tags

QList<ObjectTarget*> CanvasActionManager::targetsOf(ScadaTagActionInterface& action)
{
    QList<ObjectTarget*> targets;
    action.collectTargets(targets);
    return targets;
}

QStringList CanvasActionManager::tagStrings() const
{
    QSet<QString> tags;
    for (const ObjectTarget* target : targets()) {
        if (target->mappingState() == ObjectTarget::TagMapped)
            tags.insert(target->getTagString());
    }
    return tags.values();
}

QList<ObjectTarget*> CanvasActionManager::targets() const
{
    QList<ObjectTarget*> all;
    for (const Entry& entry : m_entries)
        entry.action->collectTargets(all);
    return all;
}

int CanvasActionManager::replaceText(const QString& before, const QString& after)
{
    int count = 0;
    for (Entry& entry : m_entries)
        count += entry.action->replaceText(before, after) ? 1 : 0;
    return count;
}

int CanvasActionManager::replacePointNames(const QList<QPair<QString, QString>>& renames)
{
    int count = 0;
    for (Entry& entry : m_entries) {
        if (entry.known) {
            count += entry.known->replacePointNames(m_hub, renames);
            continue;
        }
        for (ObjectTarget* target : targetsOf(*entry.action))
            count += target->replacePointName(m_hub, renames) ? 1 : 0;
    }
    return count;
}

QList<ScadaTagActionInterface*> CanvasActionManager::actionsNaming(const QString& tag) const
{
    QList<ScadaTagActionInterface*> found;
    for (const Entry& entry : m_entries) {
        const QList<ObjectTarget*> targets = targetsOf(*entry.action);
        if (std::any_of(targets.begin(), targets.end(),
                        [&tag](const ObjectTarget* target) { return target->getTagString() == tag; }))
            found.append(entry.action.get());
    }
    return found;
}

QList<ObjectKey> CanvasActionManager::boundObjects() const
{
    QList<ObjectKey> objects;
    QSet<QPair<int, int>> seen;
    for (const ObjectTarget* target : targets()) {
        const ObjectKey object{target->objectKindType(), target->getPid()};
        const QPair<int, int> key(static_cast<int>(object.type), object.id);
        if (!object.isValid() || seen.contains(key))
            continue;
        seen.insert(key);
        objects.append(object);
    }
    return objects;
}

QList<ObjectTarget*> CanvasActionManager::unresolvedTargets() const
{
    QList<ObjectTarget*> unresolved;
    for (ObjectTarget* target : targets()) {
        const ScadaObjectType kind = target->objectKindType();
        if (target->mappingState() == ObjectTarget::TagMapped && target->getPid() == 0 &&
            kind != ScadaObjectType::NoObject && kind != ScadaObjectType::ApplicationProperty)
            unresolved.append(target);
    }
    return unresolved;
}

// Data

Shape* CanvasActionManager::drawnShape(Entry& entry)
{
    if (entry.shape != entry.action->shape()) {
        entry.shape = entry.action->shape();
        entry.drawn = dynamic_cast<Shape*>(entry.shape);
    }
    return entry.drawn;
}

// Overlays report no change of what they show: the shape beneath does it for them.
template <typename Change>
void CanvasActionManager::watchOverlay(Entry& entry, const Change& change)
{
    Shape* shape = drawnShape(entry);
    const quint64 before = shape ? shape->overlayState() : 0;
    change();
    if (shape && shape->overlayState() != before)
        shape->changed();
}

void CanvasActionManager::push(Entry& entry, bool force)
{
    if (!force && !entry.action->isDataChanged())
        return;
    entry.action->updateDatatoTarget(force);
    countPush(entry);
}

void CanvasActionManager::countPush(Entry& entry)
{
    ++entry.changes;
    ++m_updateCount;
}

void CanvasActionManager::stamp(Entry& entry, quint64 batch)
{
    entry.lastBatch = batch;
    entry.lastTime = hubTime();
}

QDateTime CanvasActionManager::hubTime() const
{
    return m_hub ? m_hub->currentTime() : QDateTime::currentDateTimeUtc();
}

void CanvasActionManager::refreshAll()
{
    for (int place = 0; place < entryCount(); ++place)
        push(entryAt(place), true);
}

void CanvasActionManager::takeBatch(const MwDataDepartment& batch)
{
    if (!isOpen() || !m_isShown)
        return;
    ++m_batchCount;
    m_lastBatchTime = hubTime();
    const bool hasFailed = batch.points.empty();
    const bool isTurn = hasFailed != m_isSourceFailed;
    m_isSourceFailed = hasFailed;

    if (!isIndexCurrent())
        makeIndex();
    if (hasFailed || m_isPassedToAll || isTurn) {
        m_isPassedToAll = hasFailed;
        m_owedABatch.clear();
        for (int place = 0; place < entryCount(); ++place)
            pass(place, batch, isTurn);
        return;
    }
    collectConcerned(batch);
    const std::vector<int> concerned = std::exchange(m_concerned, {}); // what an action does may end in another batch
    for (const int place : concerned)
        pass(place, batch, false);
    m_concerned = concerned;
}

// Rules are undone when their source fails and take effect again when it is back, whatever else the batch holds.
void CanvasActionManager::pass(int place, const MwDataDepartment& batch, bool isTurn)
{
    Entry& entry = entryAt(place);
    watchOverlay(entry, [&] {
        entry.action->readDataFromSource(m_hub, batch, m_isOverlayKept ? 1 : 0);
        const bool isChanged = entry.action->isDataChanged();
        const bool isRuled = entry.known && !entry.known->rules().empty();
        const bool isFailureNews = isRuled && entry.known->noteFailures(batch);
        const bool isRuleTurn = isFailureNews || (isRuled && isTurn);
        if (isChanged || isRuleTurn)
            stamp(entry, m_batchCount);
        if (isChanged && hasValueUnlikeItself(*entry.action))
            owe(place);
        push(entry, isRuleTurn);
    });
}

void CanvasActionManager::owe(int place)
{
    if (std::find(m_owedABatch.begin(), m_owedABatch.end(), place) == m_owedABatch.end())
        m_owedABatch.push_back(place);
}

void CanvasActionManager::takeRecord(ObjectKey object, QuorixData& record)
{
    if (!isOpen() || !m_isShown)
        return;
    for (int place = 0; place < entryCount(); ++place) {
        Entry& entry = entryAt(place);
        ScadaTagActionInterface* action = entry.action.get();
        const QList<ObjectTarget*> targets = targetsOf(*action);
        if (!isBound(targets, object))
            continue;
        QVariantList before;
        for (const ObjectTarget* target : targets)
            before.append(target->value());
        watchOverlay(entry, [&] {
            action->updateRTValue(record, object.type, static_cast<unsigned int>(object.id), m_isOverlayKept ? 1 : 0);
        });
        for (int number = 0; number < targets.size(); ++number) {
            if (targets.at(number)->value() != before.at(number)) {
                countPush(entry);
                stamp(entry, 0);
                break;
            }
        }
        if (entry.known && !entry.known->rules().empty() && entry.known->noteFailure(object, record))
            push(entry, true);
        owe(place); // an overlay without a mark to show goes with the next batch
    }
}

void CanvasActionManager::takeProperty(const QString& name, const QVariant& value)
{
    if (!isOpen())
        return;
    for (int place = 0; place < entryCount(); ++place) {
        Entry& entry = entryAt(place);
        if (!entry.action->updatePropertyValue(name, value))
            continue;
        stamp(entry, 0);
        push(entry, false);
    }
}

const CanvasActionManager::Entry* CanvasActionManager::find(const ScadaTagActionInterface* action) const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [action](const Entry& entry) { return entry.action.get() == action; });
    return found == m_entries.end() ? nullptr : &*found;
}

CanvasActionManager::Entry* CanvasActionManager::find(const ScadaTagActionInterface* action)
{
    return const_cast<Entry*>(std::as_const(*this).find(action));
}

quint64 CanvasActionManager::changeCount(const ScadaTagActionInterface* action) const
{
    const Entry* entry = find(action);
    return entry ? entry->changes : 0;
}

CanvasActionManager::LastChange CanvasActionManager::lastChange(const ScadaTagActionInterface* action) const
{
    const Entry* entry = find(action);
    return entry ? LastChange{entry->lastBatch, entry->lastTime} : LastChange{};
}

// Which actions a batch concerns

const CanvasActionManager::IdMap<std::vector<int>>* CanvasActionManager::indexOf(ScadaObjectType type) const
{
    return const_cast<CanvasActionManager*>(this)->indexOf(type);
}

CanvasActionManager::IdMap<std::vector<int>>* CanvasActionManager::indexOf(ScadaObjectType type)
{
    if (Korvane::isPointObjectType(type))
        return &m_index.points;
    if (type == ScadaObjectType::RtuObject)
        return &m_index.rtus;
    return type == ScadaObjectType::ChannelObject ? &m_index.channels : nullptr;
}

// Another binding anywhere in the program may be one of this page's; they are rare once pages are open.
bool CanvasActionManager::isIndexCurrent() const
{
    return m_index.isMade && m_index.bindings == ObjectTagValue::bindingChanges();
}

void CanvasActionManager::makeIndex()
{
    m_index = {};
    for (std::size_t place = 0; place < m_entries.size(); ++place)
        indexTargets(static_cast<int>(place));
    m_index.bindings = ObjectTagValue::bindingChanges();
    m_index.isMade = true;
    m_foundIn.assign(m_entries.size(), 0);
    m_owedABatch.clear(); // places may be others now
    m_isPassedToAll = true;
}

void CanvasActionManager::indexTargets(int place)
{
    ScadaTagActionInterface& action = *entryAt(place).action;
    // Only of the host's own actions is it known that they hand out the same targets every time.
    bool isAlways = entryAt(place).known == nullptr;
    for (const ObjectTarget* target : targetsOf(action)) {
        isAlways |= target->getLogDataInfo() || target->objectKindType() == ScadaObjectType::ApplicationProperty;
        IdMap<std::vector<int>>* family = indexOf(target->objectKindType());
        if (!family)
            continue;
        std::vector<int>& places = (*family)[static_cast<quint32>(target->getPid())];
        if (places.empty() || places.back() != place)
            places.push_back(place);
    }
    if (isAlways)
        m_index.always.push_back(place);
}

// Collects the places of the actions that can't be skipped, in the order in which they set their shapes.
void CanvasActionManager::collectConcerned(const MwDataDepartment& batch)
{
    m_concerned.clear();
    const auto take = [this](const std::vector<int>& places) {
        for (const int place : places) {
            quint64& foundIn = m_foundIn[static_cast<std::size_t>(place)];
            if (foundIn == m_batchCount)
                continue;
            foundIn = m_batchCount;
            m_concerned.push_back(place);
        }
    };
    const auto takeFamily = [&take](const MwDataDepartment::Records& records, const IdMap<std::vector<int>>& family) {
        if (family.size() < records.size()) {
            for (const auto& [id, places] : family) {
                if (records.contains(id))
                    take(places);
            }
            return;
        }
        for (const auto& [id, record] : records) {
            const auto found = family.find(id);
            if (found != family.end())
                take(found->second);
        }
    };
    take(m_index.always);
    take(m_owedABatch);
    m_owedABatch.clear();
    takeFamily(batch.points, m_index.points);
    takeFamily(batch.rtus, m_index.rtus);
    takeFamily(batch.channels, m_index.channels);
    std::sort(m_concerned.begin(), m_concerned.end());
}

// Quality

void CanvasActionManager::setOverlayKept(bool kept)
{
    m_isOverlayKept = kept;
    m_isPassedToAll = true; // overlays may show what is no longer so
}

void CanvasActionManager::setOverlayShown(bool shown)
{
    for (Entry& entry : m_entries)
        watchOverlay(entry, [&] { entry.action->setDisplayTlq(shown); });
}

// Shapes

bool CanvasActionManager::takesMouse(const TesselInterface* shape) const
{
    const auto own = actionsOf(shape);
    return std::any_of(own.begin(), own.end(),
                       [](ScadaTagActionInterface* action) { return action->interactMouseEvent(); });
}

void CanvasActionManager::geometryChanged(const TesselInterface* shape, const QTransform& transform)
{
    for (ScadaTagActionInterface* action : actionsOf(shape))
        action->geometryChanged(transform);
}

void CanvasActionManager::timeOut()
{
    for (Entry& entry : m_entries)
        entry.action->timeOut();
}

// Alarms

void CanvasActionManager::requestAlarm(const ScadaAlarm& alarm, const QList<ScadaTagActionInterface*>& concerned)
{
    m_pendingAlarms.append(alarm);
    Q_EMIT alarmRequested({alarm, concerned});
}

void CanvasActionManager::setAlarmResult(int result)
{
    if (m_pendingAlarms.isEmpty())
        return;
    m_pendingAlarms.removeFirst();
    const QPointer<CanvasActionManager> self(this); // whoever hears of it may close the page
    Q_EMIT alarmProcessed(result);
    if (self && m_pendingAlarms.isEmpty())
        Q_EMIT alarmProcessFinished();
}
