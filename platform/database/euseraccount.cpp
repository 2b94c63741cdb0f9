#include "platform/database/euseraccount.h"

#include "platform/database/useraccountdatabase.h"

bool EUserAccount::isEqual(const EUserAccount& other) const
{
    return state == other.state && number == other.number && name == other.name && role == other.role &&
           areas == other.areas;
}

EntityMultiResult<EUserAccount> EUserAccount::allUserAccount()
{
    const UserAccountDatabase* database = UserAccountDatabase::registered();
    if (!database)
        return {{}, QStringLiteral("no database of user accounts is open")};
    return database->allUserAccounts();
}
