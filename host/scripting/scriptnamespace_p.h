#pragma once

#include "host/scripting/pythonruntime_p.h"
#include "host/scripting/scriptobjects_p.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <array>
#include <map>
#include <tuple>
#include <unordered_map>
#include <vector>

/// The namespace of a page's scripts, with the handlers that they defined. Needs the interpreter running.
class ScriptNamespace
{
public:
    using Functions = std::array<py::object, scriptHandlerCount>;

    /// \param canvas not owned; null for scripts without a page
    explicit ScriptNamespace(KVCanvasInterface* canvas);
    ~ScriptNamespace();
    Q_DISABLE_COPY(ScriptNamespace)

    py::dict& globals() { return m_globals; }
    py::object canvasObject() const { return m_canvasObject; }
    /// The page is about to go: what scripts hold of it and of its shapes turns invalid, and handlers end.
    void close();

    /// Always the same object for a shape; None for null.
    py::object shapeObject(TesselInterface* shape);
    void forgetShape(TesselInterface* shape);

    /// A script of an event as this namespace knows it.
    struct EventScript
    {
        QString title; ///< stands in tracebacks for the file; no other script's
        PythonRuntime::Code code;
        bool isBlocked = false; ///< it was stopped, and is not run again while the page is open
    };
    /// The script that \p shape, or the page for null, runs on \p trigger; not compiled yet when it is new.
    /// \param title as it is to be called, if no other script is
    EventScript& eventScript(TesselInterface* shape, int trigger, const QString& script, const QString& title);

    /// What stands in the namespace under the handlers' names now.
    Functions functions() const;
    /// Takes as handlers of \p owner what stands there in place of \p before, and what a script of \p code gave a value
    /// to; no longer what is gone.
    /// \returns what can't be a handler, and why.
    QStringList adoptHandlers(TesselInterface* owner, const Functions& before, const PythonRuntime::Code& code);
    /// The handler that is called for an event of \p shape, or of the page for null; null without one.
    PyObject* handler(TesselInterface* shape, ScriptHandler handler) const;
    /// Ends a function as a handler of whoever has it.
    void dropHandler(PyObject* function);
    /// Who has a handler of its own; null stands for the page.
    std::vector<TesselInterface*> owners(ScriptHandler handler) const;

private:
    py::dict m_globals;
    py::object m_canvasObject;
    std::shared_ptr<CanvasHandle> m_canvasHandle;
    std::unordered_map<TesselInterface*, std::pair<std::shared_ptr<ShapeHandle>, py::object>> m_shapes;
    std::unordered_map<TesselInterface*, Functions> m_handlers; ///< the page's own under null
    std::map<std::tuple<TesselInterface*, int, QString>, EventScript> m_scripts;
    QSet<QString> m_titles;
};
