#pragma once

#include "host/actions/actionrule.h"
#include "host/checking/finding.h"
#include "host/hostexport.h"

#include <vector>

class RuntimeDatabase;

/// What can be told of an action's rules without any value: conditions that never hold, and rules that never decide, since
/// one before them always does.
namespace RuleCheck {

struct Found
{
    Finding::Severity severity = Finding::Severity::Error;
    const char* code = "";
    int rule = 0;
    int condition = 0;
    QString text;
};

/// Says nothing of what it can't prove: only comparisons with numbers are understood, others are taken as they stand.
KORVANE_HOST_EXPORT std::vector<Found> run(const std::vector<ActionRule>& rules, const RuntimeDatabase& database);

} // namespace RuleCheck
