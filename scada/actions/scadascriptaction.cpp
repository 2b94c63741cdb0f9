#include "scada/actions/scadascriptaction.h"

#include "platform/core/korvanecoreinterface.h"
#include "platform/core/korvanescriptinterface.h"
#include "platform/core/kvcanvasinterface.h"
#include "platform/core/kvcanvasmanagerinterface.h"
#include "platform/data/scadaeventactionstream.h"
#include "platform/utility/pythonstringconverter.h"

#include <QDataStream>

namespace {

constexpr int scriptActionType = 1001; // stands in stored pages

KVCanvasInterface* canvasInFront(KorvaneCoreInterface& core)
{
    KVCanvasManagerInterface* canvases = core.canvasManager();
    return canvases ? canvases->currentCanvas() : nullptr;
}

} // namespace

ScadaScriptAction::ScadaScriptAction() = default;

// Kept: the script in force becomes the loaded one.
ScadaScriptAction::ScadaScriptAction(const ScadaScriptAction& other)
    : ScadaEventActionInterface(other), m_loadedScript(other.m_script), m_script(other.m_script)
{
}

// Kept: unlike the copy constructor, each string comes from its counterpart.
ScadaScriptAction& ScadaScriptAction::operator=(const ScadaScriptAction& other) = default;

ScadaScriptAction::~ScadaScriptAction() = default;

void ScadaScriptAction::setScript(const QString& script)
{
    m_script = script;
    m_loadedScript = script;
}

int ScadaScriptAction::type() const
{
    return scriptActionType;
}

void ScadaScriptAction::runAction(KorvaneCoreInterface* core, TesselInterface* shape, KVCanvasInterface* canvas)
{
    if (!core)
        return;
    KorvaneScriptInterface* scripts = core->scriptInterface();
    if (!canvas)
        canvas = canvasInFront(*core);
    if (!scripts || !canvas)
        return;
    const QString script = m_script; // the run may change or destroy the action
    scripts->runAction(canvas, shape, script, triggetType());
    const QString error = scripts->lastError();
    if (error.isEmpty())
        return;
    // Kept: composed and dropped; a script that fails is ignored.
    const QString report = canvas->canvasName() + QLatin1Char('\n') + error;
    Q_UNUSED(report)
}

ScadaEventActionInterface::State ScadaScriptAction::state()
{
    return m_script.isEmpty() ? State::Empty : State::Filled;
}

QString ScadaScriptAction::name()
{
    return tr("Script Action");
}

void ScadaScriptAction::replacePointName(KorvaneScadaCoreInterface*, const QList<QPair<QString, QString>>& renames)
{
    m_script = m_loadedScript;
    for (const auto& [before, after] : renames)
        m_script.replace(before, after);
}

bool ScadaScriptAction::replaceText(const QString& before, const QString& after)
{
    if (!m_script.contains(before))
        return false;
    m_script.replace(before, after);
    return true;
}

void ScadaScriptAction::toStream(ScadaEventActionStream& stream) const
{
    ScadaEventActionInterface::toStream(stream);
    stream.setType(type());
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out << m_script;
    stream.setData(data);
}

void ScadaScriptAction::fromStream(const ScadaEventActionStream& stream, QMap<QString, QVariant>& values)
{
    ScadaEventActionInterface::fromStream(stream, values);
    readScript(stream);
    values.insert(QStringLiteral("script"), PythonStringConverter::convert(m_script));
}

void ScadaScriptAction::fromStream(const ScadaEventActionStream& stream)
{
    ScadaEventActionInterface::fromStream(stream);
    readScript(stream);
}

void ScadaScriptAction::readScript(const ScadaEventActionStream& stream)
{
    QDataStream in(stream.data());
    QString script;
    in >> script;
    if (in.status() == QDataStream::Ok)
        setScript(script);
}

bool ScadaScriptAction::isEqual(const ScadaEventActionInterface& other)
{
    const auto* action = dynamic_cast<const ScadaScriptAction*>(&other);
    return action && action->m_script == m_script;
}

bool ScadaScriptAction::containText(const QString& text)
{
    return m_script.contains(text);
}
