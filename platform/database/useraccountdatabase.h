#pragma once

#include "platform/database/euseraccount.h"
#include "platform/platformexport.h"

#include <QtGlobal>

/// The local database of user accounts, for code that lists accounts without a data service at hand. Implemented by the
/// host.
///
/// A host registers one database for the process and keeps it alive while it is registered; nothing here owns it. GUI
/// thread only.
class KORVANE_PLATFORM_EXPORT UserAccountDatabase
{
public:
    UserAccountDatabase() = default;
    Q_DISABLE_COPY(UserAccountDatabase)
    /// Takes itself off the registration, so that no dangling database stays behind.
    virtual ~UserAccountDatabase();

    /// Every account, by ascending number.
    virtual EntityMultiResult<EUserAccount> allUserAccounts() const = 0;

    /// Makes \p database the one of this process, in place of the one before; null takes the registration back.
    static void registerDatabase(const UserAccountDatabase* database);
    static const UserAccountDatabase* registered();
};
