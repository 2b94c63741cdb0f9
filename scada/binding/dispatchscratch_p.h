#pragma once

#include "platform/data/samevalue.h"
#include "scada/binding/objecttarget.h"

#include <QList>
#include <QVariant>

#include <vector>

class ScadaTagActionInterface;

/// The targets of one action while something is done with all of them, and what dispatching them needs beside.
///
/// The lists are kept from one scratch to the next, one set for each depth of nesting, so that a page's thousands of
/// actions allocate nothing batch after batch. Scratches nest: an action may cause another one's dispatch, or its own.
/// GUI thread only; not part of the library's interface.
class DispatchScratch
{
public:
    /// Collects the action's targets; null ones are left out.
    explicit DispatchScratch(ScadaTagActionInterface& action);
    ~DispatchScratch();
    Q_DISABLE_COPY(DispatchScratch)

    /// The innermost scratch, if it is that of \p action: then its targets need not be collected again.
    static DispatchScratch* of(const ScadaTagActionInterface& action);

    const QList<ObjectTarget*>& targets() const { return m_lists.targets; }

    /// Records the value that the target in \p place holds now as its previous one, in place of the one before. A
    /// target that stands in several places has one previous value.
    void recordPrevious(int place)
    {
        if (m_lists.targets.size() == 1)
            m_ofOne = m_lists.targets.constFirst()->value();
        else
            previousPlace(place) = m_lists.targets.at(place)->value();
    }
    /// The previous value of the target in \p place; invalid when none was recorded.
    const QVariant& previous(int place) const { return m_hasPrevious ? m_lists.previous[slot(place)] : m_ofOne; }

    /// Calls \p visit for every target bound to \p id, in order.
    template <typename Visit>
    void forEachOf(qint32 id, Visit visit)
    {
        if (m_lists.targets.size() <= fewTargets) {
            for (ObjectTarget* target : targets()) {
                if (target->getPid() == id)
                    visit(target);
            }
            return;
        }
        for (int place = firstOf(id); place >= 0; place = m_lists.nextInBucket[static_cast<std::size_t>(place)]) {
            ObjectTarget* target = m_lists.targets.at(place);
            if (target->getPid() == id)
                visit(target);
        }
    }

private:
    static constexpr int fewTargets = 8; ///< searched in line; more of them through buckets by id

    struct Lists
    {
        QList<ObjectTarget*> targets;
        std::vector<QVariant> previous; ///< at least as many as targets, all invalid between scratches
        std::vector<int> slots;         ///< place of each target's previous value; empty when no target stands twice
        std::vector<int> byAddress;     ///< places in order of their targets' addresses, while repeated ones are found
        std::vector<int> buckets;       ///< first place of a target by its id's low bits, -1 without one
        std::vector<int> nextInBucket;  ///< the next place in the same bucket, -1 at its end
    };

    DispatchScratch(const ScadaTagActionInterface& action, DispatchScratch* outer);

    static Lists& listsOfDepth(std::size_t depth);

    std::size_t slot(int place) const
    {
        return static_cast<std::size_t>(m_lists.slots.empty() ? place : m_lists.slots[static_cast<std::size_t>(place)]);
    }
    QVariant& previousPlace(int place);
    void findRepeatedTargets();
    int firstOf(qint32 id);
    void fillBuckets();

    const ScadaTagActionInterface& m_action;
    DispatchScratch* m_outer;
    std::size_t m_depth;
    bool m_isCollected = false;
    bool m_hasPrevious = false;
    quint64 m_bindingsAtFill = 0; ///< buckets are good as long as no value in the program was bound anew
    QVariant m_ofOne;             ///< previous value of a single target: most actions have one
    Lists& m_lists;               ///< of this depth
};
