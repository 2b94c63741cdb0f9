#pragma once

#include "host/hostexport.h"
#include "scada/actions/scadascriptaction.h"

#include <QByteArray>
#include <QList>

#include <map>
#include <memory>
#include <vector>

class Shape;

/// The event actions of a page: of its shapes, and its own.
class KORVANE_HOST_EXPORT EventActions
{
public:
    /// One action, as the page file holds it.
    struct Entry
    {
        /// Null for an action that could not be loaded: it does nothing.
        std::unique_ptr<ScadaEventActionInterface> action;
        /// The stored members that this program does not know, or all of an action that could not be loaded, as the
        /// text of a JSON value; empty without any. Kept for saving.
        QByteArray unknown = {};
    };

    /// The actions of \p shape, of the page itself for null, in the order in which they run.
    const std::vector<Entry>& of(const Shape* shape) const;
    void add(const Shape* shape, Entry entry);
    /// The shape is about to go.
    void remove(const Shape* shape) { m_entries.erase(shape); }
    /// What stands in the place of a list of actions and is none, as the text of a JSON value; empty for most. Kept for
    /// saving.
    QByteArray unreadable(const Shape* shape) const;
    void setUnreadable(const Shape* shape, const QByteArray& stored) { m_unreadable[shape] = stored; }
    bool isEmpty() const { return m_entries.empty(); }

    /// The scripts of \p shape, one a trigger: those of the same one joined in their order. Empty ones are none.
    QList<ScadaScriptAction> scripts(const Shape* shape) const;
    /// Replaces the scripts of \p shape; empty ones are left out, actions of other kinds stay.
    void setScripts(const Shape* shape, const QList<ScadaScriptAction>& scripts);

    /// The action of a stored kind; null for a kind that there is not.
    static std::unique_ptr<ScadaEventActionInterface> make(int type);

private:
    std::map<const Shape*, std::vector<Entry>> m_entries;
    std::map<const Shape*, QByteArray> m_unreadable;
};
