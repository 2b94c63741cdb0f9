#pragma once

#include "platform/data/conditiondata.h"
#include "scada/binding/objecttarget.h"
#include "scada/scadaexport.h"

#include <QMap>
#include <QString>
#include <QVariant>

class QDataStream;
class ScadaTagActionStream;

/// One comparison of a live value (left) with a bound (right), optionally joined to the next condition by "and" or
/// "or".
///
/// Both sides are tag references; the right one is in practice a constant. Resolve and feed them through lValue() and
/// rValue(): a condition built from texts holds no values until then.
class KORVANE_SCADA_EXPORT ScadaCondition
{
public:
    /// Two unmapped targets, "==", joined to nothing.
    ScadaCondition();
    /// Sets the tag strings in force of both sides; their stored tag strings stay empty and their values invalid.
    ScadaCondition(const ConditionData& data);
    /// Copies both targets as ObjectTarget's assignment does: without their logging descriptions.
    ScadaCondition(const ScadaCondition& other);
    ScadaCondition& operator=(const ScadaCondition& other);
    ~ScadaCondition();

    /// The targets themselves, owned by the condition.
    ObjectTarget* lValue() { return &m_left; }
    ObjectTarget* rValue() { return &m_right; }
    /// Whether both sides hold a value; checkCondition() takes a single one that does not for 0.
    bool hasBothValues() const { return m_left.value().isValid() && m_right.value().isValid(); }

    void setLValue(const ObjectTarget& target) { m_left = target; }
    /// Sets the tag string in force of the right value; its stored tag string and its value stay.
    void setRValueString(const QString& text);

    Korvane::OpType opType() const { return m_operator; }
    Korvane::LogicType logicType() const { return m_logic; }
    /// "==", "<", "<=", ">", ">=" or "!="; empty for any other operator.
    QString opString() const;
    /// "&&" or "||"; empty for any other link.
    QString logicString() const;

    /// Tests the condition against the values both targets hold now.
    ///
    /// Both sides are read as numbers and narrowed to single precision before they are compared, so two doubles that
    /// differ only beyond float precision are equal, and texts are never compared as text. NaN compares as IEEE 754
    /// says.
    /// \returns false when both values are invalid or the operator is none of OpType; an invalid side alone counts as
    /// 0.
    bool checkCondition() const;

    /// "left operator right" and, with \p withLogic, the link behind another space (which stays when there is no link).
    /// Empty when the left value has no tag string.
    QString displayString(bool withLogic) const;

    /// The condition as named values: "logicalType", "oper" (numbers), "pname" (left tag string), "value" (right tag
    /// string as a number, 0 when it is none) and "dtfield" (code of the left tag's field, -1 when it has none).
    QMap<QString, QVariant> toMap() const;

    /// Writes link, operator (a signed byte each), right record, left record. See docs/stored-records.md.
    void toStream(QDataStream& stream, ScadaTagActionStream& actionStream) const;
    /// Reads a condition as laid out in the version of \p actionStream; versions below 608 leave the left value as it
    /// was. A stream that ends early gives zeros and empty texts for what is missing; its status tells.
    void fromStream(QDataStream& stream, const ScadaTagActionStream& actionStream);

    /// Compares operators, links and the tag strings of both sides; not the values.
    bool isEqual(const ScadaCondition& other) const;

private:
    ObjectTarget m_right;
    ObjectTarget m_left;
    Korvane::OpType m_operator = Korvane::OpType::Equal;
    Korvane::LogicType m_logic = Korvane::LogicType::None;
};
