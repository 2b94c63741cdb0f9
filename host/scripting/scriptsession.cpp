#include "host/scripting/scriptsession_p.h"

#include "host/runtime/runtimedatabase.h"
#include "host/scripting/pythonruntime_p.h"
#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptmodule_p.h"
#include "host/shapes/shape.h"
#include "platform/core/kvcanvasinterface.h"
#include "platform/data/tagresolution.h"
#include "scada/actions/scadascriptaction.h"
#include "scada/audio/waveplayer.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QTimer>

#include <array>
#include <utility>

namespace {

constexpr int deepestRun = 16; // scripts that run each other
constexpr std::size_t mostTags = 200000;

QString triggerText(Korvane::TriggerType trigger)
{
    ScadaScriptAction action;
    action.setTriggerType(trigger);
    return action.triggerName();
}

// Called without anybody's doing.
bool isPolled(ScriptHandler handler)
{
    return handler == ScriptHandler::PointValueChanged || handler == ScriptHandler::DataLoaded ||
           handler == ScriptHandler::RowDataRequest;
}

} // namespace

ScriptSession* ScriptSession::s_running = nullptr;

/// What runs inside counts as a script: it has the interpreter's ear, and its time is counted from the outermost one on.
class ScriptSession::Watched
{
public:
    explicit Watched(ScriptSession& session) : m_session(session)
    {
        if (session.m_depth == 0)
            begin();
        m_runningBefore = std::exchange(s_running, &session);
        ++session.m_depth;
    }
    ~Watched()
    {
        s_running = m_runningBefore;
        if (--m_session.m_depth == 0)
            end();
    }
    Q_DISABLE_COPY(Watched)

private:
    void begin()
    {
        m_session.m_printed = 0;
        auto* database = dynamic_cast<RuntimeDatabase*>(m_session.m_hub.scadaRuntime());
        if (database != m_session.m_database)
            m_session.m_tagPlaces = {};
        m_session.m_database = database;
        PythonRuntime::instance().renewOutput();
        m_session.m_watch.begin(m_session.limits.time);
    }
    void end()
    {
        m_session.m_watch.end();
        if (!m_session.isStopping())
            return;
        PyEval_SetTrace(nullptr, nullptr);
        m_session.m_stopReason.clear();
        m_session.m_stopLine = 0;
        try {
            PythonRuntime::instance().dropHalfImports();
        } catch (const std::exception&) {
            PyErr_Clear(); // a script put something odd among the modules
        }
    }

    ScriptSession& m_session;
    ScriptSession* m_runningBefore = nullptr;
};

/// A script on its way, in its page's namespace.
class ScriptSession::Run
{
public:
    Run(ScriptSession& session, const Context& context, ScriptNamespace& space)
        : m_watched(session), m_session(session), m_globals(space.globals().ptr())
    {
        if (session.m_depth > 1)
            keepFrame();
        setFrame(context, space);
        m_canvasBefore = std::exchange(session.m_canvas, context.canvas);
    }
    ~Run()
    {
        if (m_shape) {
            PyDict_SetItem(m_globals.ptr(), m_python.shapeName(), m_shape.ptr());
            PyDict_SetItem(m_globals.ptr(), m_python.triggerName(), m_trigger.ptr());
            PyDict_SetItem(m_globals.ptr(), m_python.eventName(), m_event.ptr());
        }
        m_session.m_canvas = m_canvasBefore;
    }
    Q_DISABLE_COPY(Run)

private:
    // What the script finds that runs this one, when it goes on.
    void keepFrame()
    {
        const auto present = [this](PyObject* name) {
            auto value = py::reinterpret_borrow<py::object>(PyDict_GetItemWithError(m_globals.ptr(), name));
            return value ? value : py::none(); // a script may have deleted it
        };
        m_shape = present(m_python.shapeName());
        m_trigger = present(m_python.triggerName());
        m_event = present(m_python.eventName());
    }
    void setFrame(const Context& context, ScriptNamespace& space)
    {
        py::object& event = m_session.m_eventObject;
        if (!event)
            event = m_session.m_event ? py::cast(*m_session.m_event) : py::none();
        const auto trigger = context.trigger.value_or(Korvane::TriggerType::None);
        m_python.renewNames(m_globals.ptr(), space.canvasObject().ptr());
        PyDict_SetItem(m_globals.ptr(), m_python.shapeName(), space.shapeObject(context.shape).ptr());
        PyDict_SetItem(m_globals.ptr(), m_python.triggerName(), py::int_(static_cast<int>(trigger)).ptr());
        PyDict_SetItem(m_globals.ptr(), m_python.eventName(), event.ptr());
    }

    Watched m_watched;
    const PythonRuntime& m_python = PythonRuntime::instance();
    ScriptSession& m_session;
    py::handle m_globals;
    KVCanvasInterface* m_canvasBefore = nullptr;
    py::object m_shape; ///< and the following: kept for the script that runs this one, if any
    py::object m_trigger;
    py::object m_event;
};

QString ScriptSession::Context::text() const
{
    QStringList parts;
    if (canvas)
        parts.append(QStringLiteral("page \"%1\"").arg(canvas->canvasName()));
    if (const auto* drawn = dynamic_cast<const Shape*>(shape))
        parts.append(QStringLiteral("shape \"%1\"").arg(drawn->name()));
    if (trigger)
        parts.append(QStringLiteral("event \"%1\"").arg(triggerText(*trigger)));
    if (handler)
        parts.append(QStringLiteral("handler \"%1\"").arg(scriptHandlerInfo(*handler).name));
    return parts.join(QStringLiteral(", "));
}

ScriptSession::ScriptSession(ScriptEngine& engine, KorvaneScadaCoreInterface& hub)
    : m_engine(engine), m_hub(hub), m_watch(&stopRun)
{
}

ScriptSession::~ScriptSession()
{
    while (!m_spaces.empty())
        forget(m_spaces.begin()->first);
}

ScriptNamespace* ScriptSession::space(const KVCanvasInterface* canvas) const
{
    const auto found = m_spaces.find(canvas);
    return found == m_spaces.end() ? nullptr : found->second.get();
}

std::shared_ptr<ScriptNamespace> ScriptSession::openSpace(KVCanvasInterface* canvas)
{
    std::shared_ptr<ScriptNamespace>& space = m_spaces[canvas];
    if (!space)
        space = std::make_shared<ScriptNamespace>(canvas);
    return space;
}

// What goes with the namespace may run code of the script once more (__del__), which the limit of time ends too.
void ScriptSession::forget(const KVCanvasInterface* canvas)
{
    const auto found = m_spaces.find(canvas);
    if (found == m_spaces.end())
        return;
    const Watched watched(*this);
    std::shared_ptr<ScriptNamespace> space = std::move(found->second);
    m_spaces.erase(found);
    space->close(); // a script of it may be running, and keeps it until it ends
    space.reset();
}

void ScriptSession::forgetShape(const KVCanvasInterface* canvas, TesselInterface* shape)
{
    ScriptNamespace* known = space(canvas);
    if (!known)
        return;
    const Watched watched(*this);
    known->forgetShape(shape);
}

void ScriptSession::setEvent(const std::optional<ScriptEvent>& event)
{
    m_event = event;
    m_eventObject = {};
}

bool ScriptSession::isTooDeep(const Context& context)
{
    if (m_depth < deepestRun)
        return false;
    report(QStringLiteral("%1: not run, since %2 scripts run each other already").arg(context.text()).arg(m_depth));
    return true;
}

// Whatever goes wrong on the way, nothing of it gets into the program's event loop.
template <typename Action>
bool ScriptSession::guarded(const Context& context, const Action& action)
{
    QString reason;
    try {
        return action();
    } catch (const py::error_already_set&) {
        reason = QStringLiteral("failed in a way that can't be described");
    } catch (const std::exception& error) {
        reason = QString::fromLocal8Bit(error.what());
    }
    PyErr_Clear();
    const QString where = context.text();
    report(where.isEmpty() ? reason : where + QStringLiteral(": ") + reason);
    return false;
}

void ScriptSession::runScript(const Context& context, const QString& script)
{
    lastError.clear();
    if (!context.isEvent())
        trial = {script, 0};
    if (isEnabled && !isTooDeep(context))
        guarded(context, [&] { return runGuarded(context, script); });
    else if (!isEnabled && !context.isEvent())
        report(QStringLiteral("not run: the project's scripts are not trusted"));
}

bool ScriptSession::runGuarded(const Context& context, const QString& script)
{
    const std::shared_ptr<ScriptNamespace> space = openSpace(context.canvas);
    const QString title = QStringLiteral("script of %1").arg(context.text());
    ScriptNamespace::EventScript* const known =
        context.isEvent() ? &space->eventScript(context.shape, static_cast<int>(*context.trigger), script, title)
                          : nullptr;
    if (known && known->isBlocked)
        return false;
    const QString fileName = known ? known->title : QStringLiteral("<%1>").arg(title);
    const Run run(*this, context, *space);
    const ScriptNamespace::Functions before = space->functions();
    PythonRuntime::Code code;
    bool isGood = false;
    QStringList refused;
    try {
        code = known && known->code.code ? known->code : PythonRuntime::instance().compile(script, fileName);
        if (known)
            known->code = code;
        PyObject* globals = space->globals().ptr();
        if (!py::reinterpret_steal<py::object>(PyEval_EvalCode(code.code.ptr(), globals, globals)))
            throw py::error_already_set();
        isGood = true;
    } catch (py::error_already_set& error) {
        error.restore();
    }
    // A script that fails half-way keeps the handlers that it defined.
    isGood = finish(context, fileName, isGood);
    if (!isStopping())
        refused = space->adoptHandlers(context.shape, before, code);
    if (isStopping() && known)
        known->isBlocked = true;
    for (const QString& problem : qAsConst(refused))
        report(QStringLiteral("%1: %2").arg(context.text(), problem));
    return isGood;
}

bool ScriptSession::callHandler(const Context& context, const QVariantList& arguments, const py::object& last)
{
    lastError.clear();
    const auto found = m_spaces.find(context.canvas);
    if (!isEnabled || found == m_spaces.end())
        return false;
    PyObject* const function = found->second->handler(context.shape, *context.handler);
    if (!function || isTooDeep(context))
        return false;
    const std::shared_ptr<ScriptNamespace> space = found->second;
    return guarded(context, [&] {
        return callGuarded(context, *space, py::reinterpret_borrow<py::object>(function), arguments, last);
    });
}

bool ScriptSession::callGuarded(const Context& context, ScriptNamespace& space, const py::object& function,
                                const QVariantList& arguments, const py::object& last)
{
    const Run run(*this, context, space);
    std::array<py::object, 6> values;
    std::size_t count = 0;
    const ScriptHandlerInfo& info = scriptHandlerInfo(*context.handler);
    if (info.subject == ScriptHandlerInfo::Subject::Shape)
        values[count++] = space.shapeObject(context.shape);
    else if (info.subject == ScriptHandlerInfo::Subject::Canvas)
        values[count++] = space.canvasObject();
    for (const QVariant& argument : arguments)
        values[count++] = PythonValues::toPython(argument);
    if (last)
        values[count++] = last;
    Q_ASSERT(static_cast<int>(count) == info.argumentCount);
    std::array<PyObject*, 6> pointers{};
    for (std::size_t place = 0; place < count; ++place)
        pointers[place] = values[place].ptr();
    const auto result =
        py::reinterpret_steal<py::object>(PyObject_Vectorcall(function.ptr(), pointers.data(), count, nullptr));
    const bool isGood = finish(context, QString(), result.ptr() != nullptr);
    if (isStopping())
        space.dropHandler(function.ptr());
    return isGood;
}

// Ends a run: tells of a failure, and gives false for one. The interpreter has no exception left then.
bool ScriptSession::finish(const Context& context, const QString& title, bool isGood)
{
    if (isGood && !isStopping())
        return true;
    // Describing a failure may run code of the script, which the limit of time ends as well.
    const QString failure = isStopping() ? QString() : failureText(context, title);
    PyErr_Clear();
    if (!isStopping()) {
        // What the program calls again and again tells the same only once.
        const bool isRepeated = context.handler && m_toldFailures.value(*context.handler) == failure;
        if (context.handler)
            m_toldFailures.insert(*context.handler, failure);
        if (isRepeated && isPolled(*context.handler))
            lastError = failure;
        else
            report(failure);
    } else if (m_depth == 1) {
        if (!context.isEvent())
            trial.line = m_stopLine;
        report(stopText(context));
    }
    return false;
}

QString ScriptSession::stopText(const Context& context) const
{
    const QString where = context.text();
    return QStringLiteral("%1%2line %3: stopped: %4%5")
        .arg(where, where.isEmpty() ? QString() : QStringLiteral(", "))
        .arg(m_stopLine)
        .arg(m_stopReason,
             context.isEvent() ? QStringLiteral("; it is not run again until the page is opened anew") : QString());
}

// Takes the interpreter's exception.
QString ScriptSession::failureText(const Context& context, const QString& title)
{
    const QString where = context.text();
    try {
        const py::error_already_set error;
        const PythonRuntime::Failure failure = PythonRuntime::instance().describe(error, title);
        if (!context.isEvent())
            trial.line = failure.ownLine;
        const QString comma = where.isEmpty() ? QString() : QStringLiteral(", ");
        const QString line = failure.line > 0 ? QStringLiteral("%1line %2").arg(comma).arg(failure.line) : QString();
        const QString traceback =
            failure.traceback.isEmpty() ? QString() : QLatin1Char('\n') + failure.traceback.trimmed();
        return where + line + QStringLiteral(": ") + failure.message + traceback;
    } catch (const std::exception&) {
        return where + QStringLiteral(": failed in a way that can't be described");
    }
}

void ScriptSession::report(const QString& text)
{
    lastError = text;
    Q_EMIT m_engine.stdErr(text + QLatin1Char('\n'));
    Q_EMIT m_engine.failed(text);
}

void ScriptSession::count(int characters)
{
    if (!isStopping()) {
        m_printed += characters;
        if (m_printed <= limits.output)
            return;
        stop(QStringLiteral("it printed more than %1 characters").arg(limits.output));
    }
    PyErr_SetString(PyExc_KeyboardInterrupt, "stopped");
    throw py::error_already_set();
}

void ScriptSession::write(const QString& text, bool isError)
{
    count(text.size());
    if (isError)
        Q_EMIT m_engine.stdErr(text);
    else
        Q_EMIT m_engine.stdOut(text);
}

WavePlayer& ScriptSession::player()
{
    if (!m_player)
        m_player = std::make_unique<WavePlayer>();
    return *m_player;
}

void ScriptSession::later(const std::function<void()>& action)
{
    QTimer::singleShot(0, &m_engine, [this, action] {
        if (m_depth == 0)
            action();
        else
            later(action); // a script turns the event loop
    });
}

// Called by the interpreter on the GUI thread, between two steps of a script.
int ScriptSession::stopRun(void*)
{
    ScriptSession* session = s_running;
    if (!session || !session->m_watch.isOverdue())
        return 0; // over already
    session->stop(QStringLiteral("it ran longer than %1 ms").arg(session->limits.time.count()));
    PyErr_SetString(PyExc_KeyboardInterrupt, "stopped");
    return -1;
}

// From here on every line that the script still comes to raises anew: whoever catches everything comes no further than
// the first line of what catches.
void ScriptSession::stop(const QString& reason)
{
    if (isStopping())
        return;
    m_stopReason = reason;
    m_stopLine = PythonRuntime::currentLine();
    PyEval_SetTrace(&trace, nullptr);
}

int ScriptSession::trace(PyObject*, PyFrameObject*, int what, PyObject*)
{
    if (what != PyTrace_CALL && what != PyTrace_LINE)
        return 0;
    PyErr_SetString(PyExc_KeyboardInterrupt, "stopped");
    return -1;
}

const ScriptSession::Tag& ScriptSession::tag(PyObject* text)
{
    if (!m_tagPlaces || m_tags.size() == mostTags) {
        m_tagPlaces = py::dict();
        m_tags.clear();
    }
    if (PyObject* place = PyDict_GetItemWithError(m_tagPlaces.ptr(), text))
        return m_tags[PyLong_AsSize_t(place)];
    Tag found = resolve(PythonValues::text(text));
    PyDict_SetItem(m_tagPlaces.ptr(), text, py::int_(m_tags.size()).ptr());
    m_tags.push_back(std::move(found));
    return m_tags.back();
}

ScriptSession::Tag ScriptSession::resolve(const QString& text) const
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(text, m_database);
    if (link.type == Korvane::ScadaObjectType::ApplicationProperty)
        return {{link.type, 0}, link.name};
    if (link.type == Korvane::ScadaObjectType::NoObject)
        ScriptModule::raise(PyExc_LookupError, QStringLiteral("\"%1\" names nothing").arg(text));
    if (!m_database || link.id == 0)
        ScriptModule::raise(PyExc_LookupError, QStringLiteral("there is no \"%1\"").arg(text));
    const ObjectKey key{link.type, link.id};
    if (link.field.isEmpty())
        return {key};
    const DataFieldInfo* field = DataFieldInfo::find(QStringView(link.field));
    if (!field || !field->isFieldOf(link.type))
        ScriptModule::raise(PyExc_LookupError, QStringLiteral("\"%1\" has no field \"%2\"").arg(link.name, link.field));
    return {key, {}, field};
}
