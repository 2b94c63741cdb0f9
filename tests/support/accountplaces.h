#pragma once

#include "host/accounts/accountsettings.h"
#include "tests/support/postgrescluster.h"
#include "tests/support/temporaryfiles.h"

#include <memory>

/// Databases for user accounts, each of which no test has used: files, and databases of a server that is started when the
/// first is asked for.
class AccountPlaces
{
public:
    AccountSettings file()
    {
        AccountSettings settings;
        settings.fileName = m_files.path(QStringLiteral("accounts%1.db").arg(++m_count));
        return settings;
    }
    AccountSettings database()
    {
        AccountSettings settings;
        settings.driver = AccountSettings::Driver::PostgreSql;
        settings.host = QStringLiteral("127.0.0.1");
        settings.port = server().port();
        settings.database = server().newDatabase();
        settings.user = PostgresCluster::user();
        settings.passwordFile = server().passwordFile();
        return settings;
    }
    AccountSettings next(AccountSettings::Driver driver)
    {
        return driver == AccountSettings::Driver::Sqlite ? file() : database();
    }
    PostgresCluster& server()
    {
        if (!m_server)
            m_server = std::make_unique<PostgresCluster>();
        return *m_server;
    }

private:
    TemporaryFiles m_files;
    std::unique_ptr<PostgresCluster> m_server;
    int m_count = 0;
};
