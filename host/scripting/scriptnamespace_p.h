#pragma once

#include "host/scripting/scripthandler.h"
#include "host/scripting/scriptobjects_p.h"

#include <QHash>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>

#include <array>
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

    /// The code of an event's script, compiled once.
    /// \param title stands in tracebacks for the file
    /// \throws py::error_already_set for a script that can't be compiled
    py::object code(const QString& script, const QString& title);

    /// What stands in the namespace under the handlers' names now.
    Functions functions() const;
    /// Takes what stands there in place of \p before as handlers of \p owner, and no longer what is gone.
    /// \returns what can't be a handler, and why.
    QStringList adoptHandlers(TesselInterface* owner, const Functions& before);
    /// The handler that is called for an event of \p shape, or of the page for null; null without one.
    PyObject* handler(TesselInterface* shape, ScriptHandler handler) const;
    /// Ends a function as a handler of whoever has it.
    void dropHandler(PyObject* function);
    /// Who has a handler of its own; null stands for the page.
    std::vector<TesselInterface*> owners(ScriptHandler handler) const;

    /// A script of \p title is not run again while the page is open.
    void block(const QString& title) { m_blocked.insert(title); }
    bool isBlocked(const QString& title) const { return m_blocked.contains(title); }

private:
    py::dict m_globals;
    py::object m_canvasObject;
    std::shared_ptr<CanvasHandle> m_canvasHandle;
    std::unordered_map<TesselInterface*, std::pair<std::shared_ptr<ShapeHandle>, py::object>> m_shapes;
    std::unordered_map<TesselInterface*, Functions> m_handlers; ///< the page's own under null
    QHash<QPair<QString, QString>, py::object> m_codes;         ///< by title and script
    QSet<QString> m_blocked;
};
