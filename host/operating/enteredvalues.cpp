#include "host/operating/enteredvalues.h"

#include "host/canvas/page.h"
#include "host/shapes/choice.h"
#include "host/shapes/inputfield.h"
#include "scada/binding/scadatagactioninterface.h"

#include <algorithm>

namespace {

QVariant enteredIn(const Shape& shape)
{
    if (const auto* choice = dynamic_cast<const Choice*>(&shape))
        return choice->index();
    const auto* field = dynamic_cast<const InputField*>(&shape);
    return field ? QVariant(field->text()) : QVariant();
}

QVariant shownBefore(const Shape& shape)
{
    if (const auto* choice = dynamic_cast<const Choice*>(&shape))
        return choice->indexBefore();
    const auto* field = dynamic_cast<const InputField*>(&shape);
    return field ? QVariant(field->textBefore()) : QVariant();
}

bool hasLiveValue(const Shape& shape)
{
    return shape.namedProperty(QStringLiteral("Value")).isValid();
}

} // namespace

void EnteredValues::follow(Shape& shape, quint32 requestId)
{
    const auto known = m_entries.find(&shape);
    Entry& entry = known == m_entries.end() ? m_entries[&shape] : *known;
    if (entry.sent.empty())
        entry.standing = shownBefore(shape);
    entry.sent.push_back({requestId, enteredIn(shape)});
}

void EnteredValues::takeBack(Shape& shape)
{
    const auto known = m_entries.constFind(&shape);
    show(shape, enteredIn(shape), known == m_entries.constEnd() ? shownBefore(shape) : known->sent.back().entered);
}

void EnteredValues::end(quint32 requestId, bool isDone)
{
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        auto& sent = entry->sent;
        const auto found = std::find_if(sent.begin(), sent.end(),
                                        [requestId](const Sent& each) { return each.requestId == requestId; });
        if (found == sent.end())
            continue;
        Shape& shape = *entry.key();
        const std::vector<Shape*> shapes = m_page.canvas->shapes();
        const bool isThere = std::find(shapes.begin(), shapes.end(), &shape) != shapes.end();
        const QVariant entered = found->entered;
        sent.erase(found);
        if (isDone && isThere && !hasLiveValue(shape))
            entry->standing = entered;
        const QVariant instead = sent.empty() ? entry->standing : sent.back().entered;
        if (sent.empty())
            m_entries.erase(entry);
        if (isThere)
            show(shape, entered, instead);
        return;
    }
}

// What shows something else by now has it from the process, a script or a later command.
void EnteredValues::show(Shape& shape, const QVariant& entered, const QVariant& instead) const
{
    if (instead == entered)
        return;
    if (auto* choice = dynamic_cast<Choice*>(&shape))
        choice->replace(entered.toInt(), instead.toInt());
    else if (auto* field = dynamic_cast<InputField*>(&shape))
        field->replace(entered.toString(), instead.toString());
    for (ScadaTagActionInterface* action : m_page.actions->actionsOf(&shape))
        action->updateDatatoTarget(true); // the process may have come to another value meanwhile
}
