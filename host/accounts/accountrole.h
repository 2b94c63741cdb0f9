#pragma once

#include "host/hostexport.h"

#include <QString>
#include <QtGlobal>

#include <optional>

/// What an account may do; each role may what those before it may.
enum class AccountRole : qint8 {
    Viewer,        ///< sees pages
    Operator,      ///< sends commands, acknowledges and shelves alarms
    Supervisor,    ///< inhibits, substitutes and enters values, changes limits, stops scanning
    Engineer,      ///< edits pages
    Administrator, ///< manages accounts
};

/// The role's name as databases and point lists hold it: "viewer", "operator", "supervisor", "engineer",
/// "administrator".
KORVANE_HOST_EXPORT QString accountRoleName(AccountRole role);
/// \returns nothing for a name that is no role's; case-sensitive.
KORVANE_HOST_EXPORT std::optional<AccountRole> accountRoleOf(const QString& name);
