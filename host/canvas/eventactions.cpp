#include "host/canvas/eventactions.h"

#include <algorithm>
#include <utility>

namespace {

ScadaScriptAction* scriptOf(const EventActions::Entry& entry)
{
    return dynamic_cast<ScadaScriptAction*>(entry.action.get());
}

} // namespace

const std::vector<EventActions::Entry>& EventActions::of(const Shape* shape) const
{
    static const std::vector<Entry> none;
    const auto found = m_entries.find(shape);
    return found == m_entries.end() ? none : found->second;
}

QByteArray EventActions::unreadable(const Shape* shape) const
{
    const auto found = m_unreadable.find(shape);
    return found == m_unreadable.end() ? QByteArray() : found->second;
}

void EventActions::add(const Shape* shape, Entry entry)
{
    m_entries[shape].push_back(std::move(entry));
}

QList<ScadaScriptAction> EventActions::scripts(const Shape* shape) const
{
    QMap<Korvane::TriggerType, QString> byTrigger;
    for (const Entry& entry : of(shape)) {
        ScadaScriptAction* script = scriptOf(entry);
        if (!script || script->script().isEmpty())
            continue;
        QString& text = byTrigger[script->triggetType()];
        if (!text.isEmpty() && !text.endsWith(QLatin1Char('\n')))
            text += QLatin1Char('\n');
        text += script->script();
    }
    QList<ScadaScriptAction> scripts;
    for (auto each = byTrigger.constBegin(); each != byTrigger.constEnd(); ++each) {
        ScadaScriptAction script;
        script.setTriggerType(each.key());
        script.setScript(each.value());
        scripts.append(script);
    }
    return scripts;
}

void EventActions::setScripts(const Shape* shape, const QList<ScadaScriptAction>& scripts)
{
    std::vector<Entry>& entries = m_entries[shape];
    std::map<Korvane::TriggerType, QByteArray> unknown; // of the scripts so far, for those that stay
    for (const Entry& entry : entries) {
        if (const auto script = scriptOf(entry); script && !entry.unknown.isEmpty())
            unknown.emplace(script->triggetType(), entry.unknown);
    }
    entries.erase(std::remove_if(entries.begin(), entries.end(), [](const Entry& entry) { return scriptOf(entry); }),
                  entries.end());
    for (const ScadaScriptAction& script : scripts) {
        if (script.script().isEmpty())
            continue;
        auto added = std::make_unique<ScadaScriptAction>(script);
        const QByteArray kept = unknown[added->triggetType()];
        entries.push_back({std::move(added), kept});
    }
    if (entries.empty())
        m_entries.erase(shape);
}

std::unique_ptr<ScadaEventActionInterface> EventActions::make(int type)
{
    auto script = std::make_unique<ScadaScriptAction>();
    return script->type() == type ? std::move(script) : nullptr;
}
