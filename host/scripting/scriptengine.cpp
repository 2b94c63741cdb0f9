#include "host/scripting/scriptengine.h"

#include "host/scriptediting/scripteditor.h"
#include "host/scripting/editingcontext_p.h"
#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptsession_p.h"

ScriptEngine::ScriptEngine(KorvaneScadaCoreInterface& hub, QObject* parent)
    : KorvaneScriptInterface(parent), m_session(std::make_unique<ScriptSession>(*this, hub))
{
}

ScriptEngine::~ScriptEngine() = default;

void ScriptEngine::setLimits(const Limits& limits)
{
    m_session->limits = limits;
}

const ScriptEngine::Limits& ScriptEngine::limits() const
{
    return m_session->limits;
}

void ScriptEngine::setEnabled(bool enabled)
{
    m_session->isEnabled = enabled;
}

bool ScriptEngine::isEnabled() const
{
    return m_session->isEnabled;
}

void ScriptEngine::setFolder(const QString& folder)
{
    m_session->folder = folder;
}

void ScriptEngine::setAlarmDesk(AlarmDesk* desk)
{
    m_session->alarmDesk = desk;
}

void ScriptEngine::setPageNames(std::function<QStringList()> names)
{
    m_session->pageNames = std::move(names);
}

void ScriptEngine::runAction(KVCanvasInterface* canvas, TesselInterface* shape, const QString& script,
                             Korvane::TriggerType trigger)
{
    m_session->runScript({canvas, shape, trigger}, script);
}

void ScriptEngine::runForCanvas(KVCanvasInterface* canvas, const QString& script)
{
    m_session->runScript({canvas}, script);
}

void ScriptEngine::run(const QString& script)
{
    m_session->runScript({}, script);
}

QString ScriptEngine::lastError() const
{
    return m_session->lastError;
}

QWidget* ScriptEngine::createScriptEditor(KVCanvasInterface* canvas)
{
    auto* editor = new ScriptEditor;
    refreshEditingContext(editor, canvas);
    return editor;
}

void ScriptEngine::refreshEditingContext(QPlainTextEdit* editor, KVCanvasInterface* canvas)
{
    auto* scriptEditor = qobject_cast<ScriptEditor*>(editor);
    if (!scriptEditor)
        return;
    const QStringList pages = m_session->pageNames ? m_session->pageNames() : QStringList();
    scriptEditor->setVocabulary(EditingContext::vocabulary(canvas, pages));
    const ScriptSession::Trial& trial = m_session->trial;
    if (trial.line > 0 && trial.script == editor->toPlainText())
        scriptEditor->setErrorLine(trial.line, m_session->lastError);
    else
        scriptEditor->clearErrorLine();
}

void ScriptEngine::setEvent(const std::optional<ScriptEvent>& event)
{
    m_session->setEvent(event);
}

bool ScriptEngine::hasHandler(const KVCanvasInterface* canvas, TesselInterface* shape, ScriptHandler handler) const
{
    const ScriptNamespace* space = m_session->isEnabled ? m_session->space(canvas) : nullptr;
    if (!space)
        return false;
    return scriptHandlerInfo(handler).reach == ScriptHandlerInfo::Reach::Everyone
               ? !space->owners(handler).empty()
               : space->handler(shape, handler) != nullptr;
}

bool ScriptEngine::callHandler(KVCanvasInterface* canvas, TesselInterface* shape, ScriptHandler handler,
                               const QVariantList& arguments)
{
    if (scriptHandlerInfo(handler).reach != ScriptHandlerInfo::Reach::Everyone)
        return m_session->callHandler({canvas, shape, {}, handler}, arguments);
    if (!hasHandler(canvas, shape, handler))
        return false;
    bool isGood = true;
    for (TesselInterface* owner : m_session->space(canvas)->owners(handler)) {
        isGood &= m_session->callHandler({canvas, owner, {}, handler}, arguments);
    }
    return isGood;
}

QStringList ScriptEngine::requestRow(KVCanvasInterface* canvas, TesselInterface* shape, int row)
{
    if (!hasHandler(canvas, shape, ScriptHandler::RowDataRequest))
        return {};
    const py::list values;
    if (!m_session->callHandler({canvas, shape, {}, ScriptHandler::RowDataRequest}, {row}, values))
        return {};
    QStringList cells;
    for (const py::handle value : values) {
        try {
            cells.append(PythonValues::fromPython(value).toString());
        } catch (const std::exception&) {
            cells.append(QString()); // of a kind that is no text and no number
        }
    }
    return cells;
}

void ScriptEngine::forgetCanvas(const KVCanvasInterface* canvas)
{
    m_session->forget(canvas);
}

void ScriptEngine::forgetShape(const KVCanvasInterface* canvas, TesselInterface* shape)
{
    m_session->forgetShape(canvas, shape);
}
