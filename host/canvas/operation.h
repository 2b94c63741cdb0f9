#pragma once

#include "host/hostexport.h"
#include "scada/records/inputinfoparam.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>

class Shape;

/// What an operator does to the process with a shape: which command it gives, with a fixed value or one that he enters.
/// Only a wish: whether it may be is the runtime manager's matter.
struct KORVANE_HOST_EXPORT Operation
{
    enum class Kind { Select, Operate, SetPoint, Raise, Lower, EnterValue };

    Kind kind = Kind::Operate;
    QString tag; ///< of the object that the command goes to; without a field
    /// What is sent; nothing where the operator enters it. Not of Select, Raise and Lower.
    std::optional<double> value = {};
    InputInfoParam input = {}; ///< what the operator may enter
    /// Key that gives the command while the page is in front, as QKeySequence's portable text; empty for none.
    QString key = {};
    /// The stored members that this program does not know, as the text of a JSON object; empty without one. Kept for
    /// saving.
    QByteArray unknown = {};

    bool isEqual(const Operation& other) const;

    /// The kind's name as page files hold it: "select", "operate", "setpoint", "raise", "lower", "enter".
    static QString kindName(Kind kind);
    /// \returns nothing for a name that is no kind's.
    static std::optional<Kind> kindOf(const QString& name);
    /// Whether a command of \p kind carries a value.
    static bool hasValue(Kind kind);
};

/// The operations of a page, one a shape at most.
class KORVANE_HOST_EXPORT Operations
{
public:
    /// Null for a shape without one.
    const Operation* of(const Shape* shape) const;
    /// \p operation nothing takes it away.
    void set(const Shape* shape, const std::optional<Operation>& operation);
    bool isEmpty() const { return m_operations.empty(); }
    const std::map<const Shape*, Operation>& all() const { return m_operations; }
    /// What stands in the place of an operation and is none, as the text of a JSON value; empty for most. Kept for
    /// saving.
    QByteArray unreadable(const Shape* shape) const;
    void setUnreadable(const Shape* shape, const QByteArray& stored) { m_unreadable[shape] = stored; }

private:
    std::map<const Shape*, Operation> m_operations;
    std::map<const Shape*, QByteArray> m_unreadable;
};
