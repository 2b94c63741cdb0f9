#pragma once

#include "host/accounts/accountrole.h"

#include <QString>

/// Every role, from the one that may least.
constexpr AccountRole accountRoles[] = {AccountRole::Viewer, AccountRole::Operator, AccountRole::Supervisor,
                                        AccountRole::Engineer, AccountRole::Administrator};

/// A role's name for the user's eyes; a name that is no role's as it is.
QString roleText(const QString& role);
