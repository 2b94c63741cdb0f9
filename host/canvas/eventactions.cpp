#include "host/canvas/eventactions.h"

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
    using Korvane::TriggerType;
    QMap<TriggerType, QString> before;
    QList<ScadaScriptAction> present = this->scripts(shape);
    for (ScadaScriptAction& script : present)
        before.insert(script.triggetType(), script.script());
    QMap<TriggerType, QString> after;
    for (ScadaScriptAction script : scripts) {
        if (!script.script().isEmpty())
            after.insert(script.triggetType(), script.script());
    }
    // A changed script stands in the place of the first of its trigger, the others of it are in it; unchanged ones stay
    // as they are.
    QMap<TriggerType, QString> waiting = after;
    std::vector<Entry> kept;
    for (Entry& entry : m_entries[shape]) {
        ScadaScriptAction* script = scriptOf(entry);
        const TriggerType trigger = script ? script->triggetType() : TriggerType::None;
        const bool isAsBefore = !script || (after.contains(trigger) && after[trigger] == before.value(trigger));
        if (script && isAsBefore) {
            waiting.remove(trigger);
        } else if (script) {
            if (!waiting.contains(trigger))
                continue;
            script->setScript(waiting.take(trigger));
        }
        kept.push_back(std::move(entry));
    }
    for (auto added = waiting.constBegin(); added != waiting.constEnd(); ++added) {
        auto script = std::make_unique<ScadaScriptAction>();
        script->setTriggerType(added.key());
        script->setScript(added.value());
        kept.push_back({std::move(script)});
    }
    if (kept.empty())
        m_entries.erase(shape);
    else
        m_entries[shape] = std::move(kept);
}

std::unique_ptr<ScadaEventActionInterface> EventActions::make(int type)
{
    auto script = std::make_unique<ScadaScriptAction>();
    return script->type() == type ? std::move(script) : nullptr;
}
