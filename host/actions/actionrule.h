#pragma once

#include "host/hostexport.h"
#include "scada/binding/scadacondition.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <vector>

/// A condition and its two sides as the engineer wrote them: resolving leaves bare names in the condition.
struct KORVANE_HOST_EXPORT RuleCondition
{
    RuleCondition() = default;
    explicit RuleCondition(const ConditionData& data);
    /// \param condition not resolved, as a stored record gives it
    explicit RuleCondition(const ScadaCondition& condition);

    /// "tag operator bound", as written.
    QString text() const;
    /// What it was made from.
    ConditionData data() const;

    ScadaCondition condition;
    QString tag;
    QString bound;
    /// The stored members that this program does not know, as the text of a JSON object; empty without one.
    QByteArray unknownMembers;
};

/// Conditions that chain with "and" and "or", and the properties that a shape takes on while they hold.
///
/// Each condition's link joins it to the next one; "and" binds closer than "or", as engineers read "a && b || c". The
/// last condition's link joins it to nothing.
struct KORVANE_HOST_EXPORT ActionRule
{
    std::vector<RuleCondition> conditions;
    QVariantMap set; ///< property by name
    /// As those of a condition.
    QByteArray unknownMembers;

    /// Whether the chain holds with the values that its conditions have now; false without conditions. A condition with a
    /// side that was never seen does not hold: a page that was just opened says nothing about it.
    bool holds() const;
    /// "a > 1 && b < 2", as written.
    QString text() const;
};
