#include "host/scripting/scriptnamespace_p.h"

#include "host/scripting/pythonvalues_p.h"

ScriptNamespace::ScriptNamespace(KVCanvasInterface* canvas)
    : m_globals(PythonRuntime::instance().freshGlobals()), m_canvasObject(py::none())
{
    if (!canvas)
        return;
    m_canvasHandle = std::make_shared<CanvasHandle>(CanvasHandle{canvas, this});
    m_canvasObject = py::cast(m_canvasHandle);
}

ScriptNamespace::~ScriptNamespace()
{
    close();
    m_globals.clear(); // functions hold it, and it holds them
}

void ScriptNamespace::close()
{
    if (m_canvasHandle)
        *m_canvasHandle = {};
    for (auto& [shape, objects] : m_shapes)
        objects.first->shape = nullptr;
    m_shapes.clear();
    m_handlers.clear();
}

py::object ScriptNamespace::shapeObject(TesselInterface* shape)
{
    if (!shape)
        return py::none();
    auto& [handle, object] = m_shapes[shape];
    if (!handle) {
        handle = std::make_shared<ShapeHandle>(ShapeHandle{shape});
        object = py::cast(handle);
    }
    return object;
}

void ScriptNamespace::forgetShape(TesselInterface* shape)
{
    const auto found = m_shapes.find(shape);
    if (found != m_shapes.end()) {
        found->second.first->shape = nullptr;
        m_shapes.erase(found);
    }
    m_handlers.erase(shape);
}

ScriptNamespace::EventScript& ScriptNamespace::eventScript(TesselInterface* shape, int trigger, const QString& script,
                                                           const QString& title)
{
    EventScript& known = m_scripts[{shape, trigger, script}];
    if (known.title.isEmpty()) {
        known.title = QStringLiteral("<%1>").arg(title);
        for (int number = 2; m_titles.contains(known.title); ++number)
            known.title = QStringLiteral("<%1, no. %2>").arg(title).arg(number);
        m_titles.insert(known.title);
    }
    return known;
}

ScriptNamespace::Functions ScriptNamespace::functions() const
{
    Functions found;
    for (std::size_t place = 0; place < found.size(); ++place) {
        PyObject* name = PythonRuntime::instance().handlerName(static_cast<ScriptHandler>(place));
        found[place] = py::reinterpret_borrow<py::object>(PyDict_GetItemWithError(m_globals.ptr(), name));
    }
    return found;
}

QStringList ScriptNamespace::adoptHandlers(TesselInterface* owner, const Functions& before,
                                           const PythonRuntime::Code& code)
{
    QStringList refused;
    const Functions now = functions();
    for (std::size_t place = 0; place < now.size(); ++place) {
        if (now[place].is(before[place]) && !code.storesHandler[place])
            continue;
        const ScriptHandlerInfo& info = scriptHandlerInfo(static_cast<ScriptHandler>(place));
        QString problem;
        if (now[place])
            problem = PythonRuntime::instance().checkHandler(now[place], info.argumentCount);
        m_handlers[owner][place] = problem.isEmpty() ? now[place] : py::object();
        if (!problem.isEmpty()) {
            refused.append(QStringLiteral("%1 %2, but is called as %1(%3): it will not be called")
                               .arg(info.name, problem, QLatin1String(info.arguments)));
        }
    }
    return refused;
}

PyObject* ScriptNamespace::handler(TesselInterface* shape, ScriptHandler handler) const
{
    const auto place = static_cast<std::size_t>(handler);
    const auto own = m_handlers.find(shape);
    if (own != m_handlers.end() && own->second[place])
        return own->second[place].ptr();
    if (scriptHandlerInfo(handler).reach != ScriptHandlerInfo::Reach::OwnerOrPage)
        return nullptr;
    const auto page = m_handlers.find(nullptr);
    return page == m_handlers.end() ? nullptr : page->second[place].ptr();
}

void ScriptNamespace::dropHandler(PyObject* function)
{
    for (auto& [owner, functions] : m_handlers) {
        for (py::object& each : functions) {
            if (each.ptr() == function)
                each = {};
        }
    }
}

std::vector<TesselInterface*> ScriptNamespace::owners(ScriptHandler handler) const
{
    std::vector<TesselInterface*> found;
    for (const auto& [owner, functions] : m_handlers) {
        if (functions[static_cast<std::size_t>(handler)])
            found.push_back(owner);
    }
    return found;
}
