#pragma once

#include "host/accounts/accountsettings.h"

#include <QSqlDatabase>
#include <QString>

#include <tl/expected.hpp>

/// Opening the database of the user accounts, of either kind.
namespace AccountConnection {

/// What a user may call the database.
QString nameOf(const AccountSettings& settings);

/// Makes the Qt connection of that name, not yet opened.
tl::expected<void, QString> add(const QString& connection, const AccountSettings& settings);
/// The connection, which is opened if it is not, or no longer. Makes the tables that are missing when it is opened. Takes
/// about two seconds at most with a server that does not answer.
tl::expected<QSqlDatabase, QString> ready(const QString& connection, const AccountSettings& settings);

} // namespace AccountConnection
