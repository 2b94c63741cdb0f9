#include "scada/binding/dispatchscratch_p.h"

#include "scada/binding/scadatagactioninterface.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <numeric>

namespace {

DispatchScratch* innermost = nullptr;

} // namespace

DispatchScratch::Lists& DispatchScratch::listsOfDepth(std::size_t depth)
{
    static Lists outermost;
    static std::deque<Lists> nested; // which stay where they are when there come more
    if (depth == 0)
        return outermost;
    if (depth > nested.size())
        nested.emplace_back();
    return nested[depth - 1];
}

DispatchScratch::DispatchScratch(const ScadaTagActionInterface& action, DispatchScratch* outer)
    : m_action(action), m_outer(outer), m_depth(outer ? outer->m_depth + 1 : 0), m_lists(listsOfDepth(m_depth))
{
    innermost = this; // from here on this depth is taken, also for what an override does while it collects
}

// Delegates, so that the destructor gives the depth back even when collecting throws.
DispatchScratch::DispatchScratch(ScadaTagActionInterface& action) : DispatchScratch(action, innermost)
{
    action.collectTargets(m_lists.targets);
    if (m_lists.targets.contains(nullptr))
        m_lists.targets.removeAll(nullptr);
    m_isCollected = true;
}

DispatchScratch::~DispatchScratch()
{
    innermost = m_outer;
    // Values may be of types that don't live to the end of the program.
    if (m_hasPrevious)
        std::fill_n(m_lists.previous.begin(), m_lists.targets.size(), QVariant());
    m_lists.targets.erase(m_lists.targets.begin(), m_lists.targets.end()); // clear() would give the memory back
    if (!m_lists.slots.empty())
        m_lists.slots.clear();
    if (!m_lists.buckets.empty())
        m_lists.buckets.clear();
}

DispatchScratch* DispatchScratch::of(const ScadaTagActionInterface& action)
{
    return innermost && &innermost->m_action == &action && innermost->m_isCollected ? innermost : nullptr;
}

QVariant& DispatchScratch::previousPlace(int place)
{
    if (!m_hasPrevious) {
        const auto count = static_cast<std::size_t>(m_lists.targets.size());
        if (m_lists.previous.size() < count)
            m_lists.previous.resize(count);
        findRepeatedTargets();
        m_hasPrevious = true;
    }
    return m_lists.previous[slot(place)];
}

void DispatchScratch::findRepeatedTargets()
{
    // Most actions append their targets in the order in which they lie in memory, each once.
    const QList<ObjectTarget*>& targets = m_lists.targets;
    const bool isInOrder = std::adjacent_find(targets.begin(), targets.end(), std::greater_equal<>()) == targets.end();
    if (isInOrder)
        return;
    std::vector<int>& byAddress = m_lists.byAddress;
    byAddress.resize(static_cast<std::size_t>(targets.size()));
    std::iota(byAddress.begin(), byAddress.end(), 0);
    std::sort(byAddress.begin(), byAddress.end(), [&targets](int a, int b) {
        return targets.at(a) == targets.at(b) ? a < b : std::less<>()(targets.at(a), targets.at(b));
    });
    m_lists.slots.resize(byAddress.size());
    int first = byAddress.front();
    for (const int place : byAddress) {
        if (targets.at(first) != targets.at(place))
            first = place;
        m_lists.slots[static_cast<std::size_t>(place)] = first;
    }
}

void DispatchScratch::fillBuckets()
{
    const std::size_t count = static_cast<std::size_t>(m_lists.targets.size());
    std::size_t size = 16;
    while (size < 2 * count)
        size *= 2;
    m_bindingsAtFill = ObjectTagValue::bindingChanges();
    m_lists.buckets.assign(size, -1);
    m_lists.nextInBucket.resize(count);
    for (std::size_t place = count; place-- > 0;) { // from the end, so that buckets keep the targets' order
        const auto id = static_cast<quint32>(m_lists.targets.at(static_cast<int>(place))->getPid());
        int& first = m_lists.buckets[id & (size - 1)];
        m_lists.nextInBucket[place] = first;
        first = static_cast<int>(place);
    }
}

int DispatchScratch::firstOf(qint32 id)
{
    if (m_lists.buckets.empty() || m_bindingsAtFill != ObjectTagValue::bindingChanges())
        fillBuckets();
    return m_lists.buckets[static_cast<quint32>(id) & (m_lists.buckets.size() - 1)];
}
