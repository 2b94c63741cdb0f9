#include "host/scripting/pagescripts.h"

#include "host/canvas/page.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/datalinkinfo.h"
#include "scada/binding/objecttarget.h"

#include <algorithm>
#include <unordered_map>

namespace {

using Korvane::TriggerType;

/// The handler that stands for a trigger, besides its event actions.
std::optional<ScriptHandler> handlerOf(TriggerType trigger)
{
    switch (trigger) {
    case TriggerType::MouseDoubleClick:
        return ScriptHandler::DoubleClick;
    case TriggerType::MouseHover:
        return ScriptHandler::MouseEnter;
    case TriggerType::MouseLeave:
        return ScriptHandler::MouseLeave;
    case TriggerType::CanvasLoad:
    case TriggerType::ObjectLoading:
        return ScriptHandler::Load;
    default:
        return std::nullopt;
    }
}

using BoundShapes = std::vector<std::pair<Shape*, std::vector<ObjectKey>>>;

/// The shapes that are bound to objects, with these, in the order of their first actions.
BoundShapes boundShapes(const Page& page)
{
    BoundShapes shapes;
    std::unordered_map<const TesselInterface*, std::size_t> places;
    for (ScadaTagActionInterface* action : page.actions->actions()) {
        auto* shape = dynamic_cast<Shape*>(action->shape());
        QList<ObjectTarget*> targets;
        action->collectTargets(targets);
        for (ObjectTarget* target : qAsConst(targets)) {
            if (!shape || target->getPid() == 0)
                continue;
            const auto [place, isNew] = places.emplace(shape, shapes.size());
            if (isNew)
                shapes.push_back({shape, {}});
            shapes[place->second].second.push_back({target->objectKindType(), target->getPid()});
        }
    }
    return shapes;
}

// Actions that could not be loaded are none: what they stand for must not take events away from shapes beneath.
bool hasActions(const Page& page, const Shape* shape)
{
    const std::vector<EventActions::Entry>& entries = page.events.of(shape);
    return std::any_of(entries.begin(), entries.end(),
                       [](const EventActions::Entry& entry) { return entry.action != nullptr; });
}

} // namespace

PageScripts::PageScripts(Page& page, KorvaneCoreInterface& core, ScriptEngine& engine, const RuntimeDatabase& database,
                         QObject* parent)
    : QObject(parent), m_page(page), m_core(core), m_engine(engine), m_database(database)
{
    for (Shape* shape : page.canvas->shapes()) {
        if (hasActions(page, shape))
            m_heeding.push_back(shape);
        if (auto* table = dynamic_cast<Table*>(shape))
            m_tables.push_back({table, false});
    }
    connect(page.canvas.get(), &Canvas::acted, this, &PageScripts::noteAct);
}

PageScripts::~PageScripts()
{
    for (const ServedTable& served : m_tables)
        served.table->setRows(nullptr);
    m_engine.forgetCanvas(m_page.canvas.get());
}

void PageScripts::load()
{
    if (m_isLoaded)
        return;
    m_isLoaded = true;
    m_loading = boundShapes(m_page);
    for (Shape* shape : m_heeding)
        fire(TriggerType::ObjectLoading, shape, std::nullopt);
    fire(TriggerType::CanvasLoad, nullptr, std::nullopt);
}

void PageScripts::unload()
{
    if (!m_isLoaded)
        return;
    fire(TriggerType::CanvasUnload, nullptr, std::nullopt);
    m_isLoaded = false;
}

Shape* PageScripts::targetAt(const QPointF& position) const
{
    const auto isHit = [&position](const Shape* shape) {
        const StratelInterface* layer = const_cast<Shape*>(shape)->layer();
        return shape->isVisible() && (!layer || layer->isVisible()) && shape->contains(shape->mapFromScene(position));
    };
    const auto found = std::find_if(m_heeding.rbegin(), m_heeding.rend(), isHit);
    return found == m_heeding.rend() ? nullptr : *found;
}

void PageScripts::fire(TriggerType trigger, Shape* shape, const std::optional<ScriptEvent>& event)
{
    if (!m_isLoaded)
        return;
    m_engine.setEvent(event);
    runActions(trigger, shape);
    if (const auto handler = handlerOf(trigger))
        call(shape, *handler);
    m_engine.setEvent(std::nullopt);
    if (m_values.empty())
        keepValues(); // there may be a handler now: from here on, changes are told
    serveTables();
}

// Whatever ran may have defined the handler that fills a table, or taken it away.
void PageScripts::serveTables()
{
    for (ServedTable& served : m_tables) {
        const bool isServed = m_engine.hasHandler(m_page.canvas.get(), served.table, ScriptHandler::RowDataRequest);
        if (isServed == served.isServed)
            continue;
        served.isServed = isServed;
        served.table->setRows(isServed ? this : nullptr);
    }
}

QStringList PageScripts::tableRow(Table& table, int row)
{
    return m_engine.requestRow(m_page.canvas.get(), &table, row);
}

void PageScripts::runActions(TriggerType trigger, Shape* shape)
{
    for (const EventActions::Entry& entry : m_page.events.of(shape)) {
        if (entry.action && entry.action->triggetType() == trigger)
            entry.action->runAction(&m_core, shape, m_page.canvas.get());
    }
}

void PageScripts::click(Shape* shape, const ScriptEvent& event)
{
    if (!m_isLoaded)
        return;
    m_engine.setEvent(event);
    call(shape, ScriptHandler::Click);
    m_engine.setEvent(std::nullopt);
}

void PageScripts::call(Shape* shape, ScriptHandler handler, const QVariantList& arguments)
{
    if (m_engine.hasHandler(m_page.canvas.get(), shape, handler))
        m_engine.callHandler(m_page.canvas.get(), shape, handler, arguments);
}

void PageScripts::noteAct(Shape* shape, const QString& handler, const QVariantList& arguments)
{
    const auto known = scriptHandlerOf(handler);
    if (m_isLoaded && known)
        call(shape, *known, arguments);
}

void PageScripts::noteZoom(double zoom)
{
    if (m_isLoaded)
        call(nullptr, ScriptHandler::ZoomLevelChanged, {zoom});
}

void PageScripts::noteSession(ScriptHandler handler)
{
    if (m_isLoaded)
        call(nullptr, handler);
}

void PageScripts::noteValues()
{
    if (!m_isLoaded)
        return;
    noteChangedPoints();
    noteLoadedShapes();
}

QVariant PageScripts::valueOf(ObjectKey object) const
{
    const QuorixData record = m_database.presentRecord(object);
    const QuorixValue* value = record.GetValue(DataFieldInfo::currentValueMember);
    return value ? value->toVariant() : QVariant();
}

// What changed before there was a handler is no news to it.
void PageScripts::keepValues()
{
    m_values.clear();
    if (!m_engine.hasHandler(m_page.canvas.get(), nullptr, ScriptHandler::PointValueChanged))
        return;
    for (const ObjectKey object : m_page.actions->boundObjects())
        m_values.emplace_back(object, valueOf(object));
}

void PageScripts::noteChangedPoints()
{
    if (!m_engine.hasHandler(m_page.canvas.get(), nullptr, ScriptHandler::PointValueChanged)) {
        m_values.clear();
        return;
    }
    for (auto& [object, known] : m_values) {
        const QVariant value = valueOf(object);
        if (value == known)
            continue;
        known = value;
        const QString tag = Korvane::tagPrefix(object.type) + m_database.object(object)->name;
        call(nullptr, ScriptHandler::PointValueChanged, {tag, value});
    }
}

void PageScripts::noteLoadedShapes()
{
    const auto hasValues = [this](const auto& waiting) {
        return m_engine.hasHandler(m_page.canvas.get(), waiting.first, ScriptHandler::DataLoaded) &&
               std::all_of(waiting.second.begin(), waiting.second.end(),
                           [this](ObjectKey object) { return valueOf(object).isValid(); });
    };
    std::vector<Shape*> loaded;
    for (const auto& waiting : m_loading) {
        if (hasValues(waiting))
            loaded.push_back(waiting.first);
    }
    if (loaded.empty())
        return;
    m_loading.erase(std::remove_if(m_loading.begin(), m_loading.end(), hasValues), m_loading.end());
    for (Shape* shape : loaded)
        call(shape, ScriptHandler::DataLoaded);
}
