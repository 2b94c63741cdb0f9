#pragma once

#include "host/hostexport.h"

#include <QString>

#include <memory>
#include <vector>

class CanvasScadaActionManagerInterface;
class Shape;
class TagAction;

/// One thing that a shape is bound to: a value of one of its tag actions, or a tag that rules of one compare, however
/// many of their conditions do.
struct KORVANE_HOST_EXPORT ShapeBinding
{
    TagAction* action = nullptr; ///< of the page; not owned
    int place = -1;              ///< of the value; -1 for a tag of rules
    QString tag;                 ///< as it is written

    bool isValue() const { return place >= 0; }
    /// What the binding is for, as "Number", "Trend, value 2" or "Colour, condition".
    QString purpose() const;
    /// A copy of the action with \p tag in place of the binding's.
    std::unique_ptr<TagAction> rebound(const QString& newTag) const;

    /// The bindings of \p shape in the order of its actions, values before rules; constants are none.
    static std::vector<ShapeBinding> of(const CanvasScadaActionManagerInterface& actions, const Shape& shape);
};
