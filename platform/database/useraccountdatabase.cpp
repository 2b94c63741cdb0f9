#include "platform/database/useraccountdatabase.h"

namespace {

const UserAccountDatabase* registeredDatabase = nullptr;

} // namespace

UserAccountDatabase::~UserAccountDatabase()
{
    if (registeredDatabase == this)
        registeredDatabase = nullptr;
}

void UserAccountDatabase::registerDatabase(const UserAccountDatabase* database)
{
    registeredDatabase = database;
}

const UserAccountDatabase* UserAccountDatabase::registered()
{
    return registeredDatabase;
}
