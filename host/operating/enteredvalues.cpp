#include "host/operating/enteredvalues.h"

#include "host/canvas/page.h"
#include "host/shapes/choice.h"
#include "host/shapes/inputfield.h"
#include "scada/binding/scadatagactioninterface.h"

#include <algorithm>

namespace {

bool hasLiveValue(const Shape& shape)
{
    return shape.namedProperty(QStringLiteral("Value")).isValid();
}

} // namespace

EnteredValues::Entered EnteredValues::in(Shape& shape)
{
    if (const auto* choice = dynamic_cast<const Choice*>(&shape))
        return {&shape, choice->index(), choice->indexBefore()};
    const auto* field = dynamic_cast<const InputField*>(&shape);
    return field ? Entered{&shape, field->text(), field->textBefore()} : Entered{&shape, {}, {}};
}

void EnteredValues::follow(const Entered& entered, quint32 requestId)
{
    Entry& entry = m_entries[entered.shape];
    // The process or a script has replaced what was sent: whatever becomes of that, it shows no more.
    if (!entry.sent.empty() && entered.before != entry.sent.back().entered)
        entry.sent.clear();
    if (entry.sent.empty())
        entry.standing = entered.before;
    entry.sent.push_back({requestId, entered.value});
}

void EnteredValues::takeBack(const Entered& entered)
{
    show(*entered.shape, entered.value, entered.before);
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
