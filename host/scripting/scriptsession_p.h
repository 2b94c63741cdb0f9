#pragma once

#include "host/scripting/scriptengine.h"
#include "host/scripting/scriptnamespace_p.h"
#include "host/scripting/scriptwatch_p.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/objectkey.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class RuntimeDatabase;
class WavePlayer;

/// An engine at work: its pages' namespaces, and the script that runs.
class ScriptSession
{
public:
    /// Whose script runs, and on what occasion.
    struct Context
    {
        KVCanvasInterface* canvas = nullptr;
        TesselInterface* shape = nullptr;
        std::optional<Korvane::TriggerType> trigger = {};
        std::optional<ScriptHandler> handler = {};

        /// As 'page "overview", shape "V-1", event "Mouse Press"'; empty for a script by itself.
        QString text() const;
        /// Whether something that happened runs it, and will run it again.
        bool isEvent() const { return trigger || handler; }
    };

    /// What a tag stands for.
    struct Tag
    {
        ObjectKey object;
        QString name = {};                    ///< of an application property
        const DataFieldInfo* field = nullptr; ///< null for the current value
    };

    ScriptSession(ScriptEngine& engine, KorvaneScadaCoreInterface& hub);
    ~ScriptSession();
    Q_DISABLE_COPY(ScriptSession)

    void runScript(const Context& context, const QString& script);
    /// Calls the handler that the shape or its page has with the handler's subject, \p arguments and, unless it is
    /// empty, \p last.
    /// \returns false without one, or when it failed
    bool callHandler(const Context& context, const QVariantList& arguments, const py::object& last = {});

    /// The namespace of \p canvas; null when no script needed it yet.
    ScriptNamespace* space(const KVCanvasInterface* canvas) const;
    void forget(const KVCanvasInterface* canvas);
    void forgetShape(const KVCanvasInterface* canvas, TesselInterface* shape);
    void setEvent(const std::optional<ScriptEvent>& event);

    // For the functions of the module.

    /// The session whose script runs now; null between scripts.
    static ScriptSession* running() { return s_running; }
    ScriptEngine& engine() { return m_engine; }
    KorvaneScadaCoreInterface& hub() { return m_hub; }
    /// Null in a system without points.
    RuntimeDatabase* database() { return m_database; }
    /// The page whose script runs; null for a script by itself.
    KVCanvasInterface* runningCanvas() const { return m_canvas; }
    /// \throws py::error_already_set (LookupError) for a text that names no object, or a field that it lacks
    const Tag& tag(PyObject* text);
    /// Takes what a script printed. \throws py::error_already_set when it was too much
    void write(const QString& text, bool isError);
    /// Plays the sounds of scripts; lives as long as the session.
    WavePlayer& player();
    /// Counts what a script puts out. \throws py::error_already_set when it was too much
    void count(int characters);
    /// Does something once no script runs any more, unless the engine is gone by then.
    void later(const std::function<void()>& action);

    /// The script that was run by hand last, and the line on which it failed; 0 when it did not.
    struct Trial
    {
        QString script;
        int line = 0;
    };
    Trial trial;
    ScriptEngine::Limits limits;
    std::function<QStringList()> pageNames;
    QString folder;
    AlarmDesk* alarmDesk = nullptr;
    QString lastError;
    bool isEnabled = true;

private:
    class Watched;
    class Run;

    static int stopRun(void*);
    static int trace(PyObject*, PyFrameObject*, int what, PyObject*);
    void stop(const QString& reason);
    bool isStopping() const { return !m_stopReason.isEmpty(); }
    std::shared_ptr<ScriptNamespace> openSpace(KVCanvasInterface* canvas);
    bool isTooDeep(const Context& context);
    template <typename Action>
    bool guarded(const Context& context, const Action& action);
    bool runGuarded(const Context& context, const QString& script);
    bool callGuarded(const Context& context, ScriptNamespace& space, const py::object& function,
                     const QVariantList& arguments, const py::object& last);
    bool finish(const Context& context, const QString& title, bool isGood);
    QString failureText(const Context& context, const QString& title);
    QString stopText(const Context& context) const;
    void report(const QString& text);
    Tag resolve(const QString& text) const;

    static ScriptSession* s_running;

    ScriptEngine& m_engine;
    KorvaneScadaCoreInterface& m_hub;
    RuntimeDatabase* m_database = nullptr; ///< the hub's, as of the beginning of the script
    ScriptWatch m_watch;
    std::map<const KVCanvasInterface*, std::shared_ptr<ScriptNamespace>> m_spaces;
    std::optional<ScriptEvent> m_event;
    py::object m_eventObject; ///< m_event for scripts; nothing until one needs it
    py::object m_tagPlaces;   ///< dict from text to place in m_tags; nothing before the first tag
    std::vector<Tag> m_tags;
    KVCanvasInterface* m_canvas = nullptr;
    std::unique_ptr<WavePlayer> m_player;
    int m_depth = 0;      ///< of scripts run by what scripts did
    qint64 m_printed = 0; ///< characters since the outermost script began
    QString m_stopReason; ///< empty unless the script that runs is to end
    int m_stopLine = 0;
    QHash<ScriptHandler, QString> m_toldFailures; ///< the newest of each handler
};
