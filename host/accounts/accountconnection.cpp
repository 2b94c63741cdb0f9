#include "host/accounts/accountconnection_p.h"

#include "host/runtime/sql_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <sodium.h>

namespace {

using Driver = AccountSettings::Driver;

// A server that is gone, hangs or waits for a lock must not hold up the program: two seconds is the shortest wait for a
// connection that there is. A workplace that was switched off in a transaction gives its lock back.
constexpr auto serverOptions = "connect_timeout=2;keepalives=1;keepalives_idle=2;keepalives_interval=1;"
                               "keepalives_count=2;tcp_user_timeout=2000;"
                               "options='-c statement_timeout=2000 -c idle_in_transaction_session_timeout=5000 "
                               "-c client_min_messages=warning'";

// One transaction makes them all, so that the number's row, made last, tells whether they are there.
constexpr const char* tables[] = {
    "CREATE TABLE IF NOT EXISTS SYSTEM_USER_ACCOUNT (NUMBER INTEGER PRIMARY KEY, NAME TEXT UNIQUE NOT NULL, "
    "ROLE TEXT NOT NULL, AREAS TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS SYSTEM_USER_PASSWORD (NUMBER INTEGER PRIMARY KEY REFERENCES "
    "SYSTEM_USER_ACCOUNT(NUMBER), "
    "HASH TEXT NOT NULL, LOCKED INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS SYSTEM_USER_NUMBER (ID INTEGER PRIMARY KEY, LAST_NUMBER INTEGER NOT NULL)",
    "INSERT INTO SYSTEM_USER_NUMBER (ID, LAST_NUMBER) VALUES (1, 0) ON CONFLICT DO NOTHING",
};

bool hasTables(const QSqlDatabase& database)
{
    return ask(database, QStringLiteral("SELECT LAST_NUMBER FROM SYSTEM_USER_NUMBER WHERE ID = 1")).has_value();
}

tl::expected<void, QString> makeTables(QSqlDatabase& database, Driver driver)
{
    Transaction transaction(database);
    // Two workplaces may start at once, and "if not exists" alone lets both try. The number is any that is ours.
    if (driver == Driver::PostgreSql) {
        if (auto locked = execute(database, QStringLiteral("SELECT pg_advisory_xact_lock(7240119851)")); !locked)
            return locked;
    }
    for (const char* table : tables) {
        if (auto made = execute(database, QLatin1String(table)); !made)
            return made;
    }
    return transaction.commit();
}

/// A file that only its owner may read, before anything is in it.
tl::expected<void, QString> makeFile(const QString& fileName)
{
    if (QFileInfo::exists(fileName))
        return {};
    QTemporaryFile file(fileName + QStringLiteral(".XXXXXX")); // these are their owner's alone
    if (file.open() && file.rename(fileName)) {
        file.setAutoRemove(false);
        return {};
    }
    if (QFileInfo::exists(fileName)) // by another program in the meantime
        return {};
    return tl::make_unexpected(file.errorString());
}

/// First line of the password file; empty without one.
tl::expected<QString, QString> serverPassword(const QString& fileName)
{
    if (fileName.isEmpty())
        return QString();
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return tl::make_unexpected(QStringLiteral("the password file %1 can't be read: %2")
                                       .arg(QDir::toNativeSeparators(fileName), file.errorString()));
    }
    constexpr qint64 longest = 1024;
    QByteArray line = file.readLine(longest);
    QString password = QString::fromUtf8(line);
    sodium_memzero(line.data(), std::size_t(line.size()));
    while (password.endsWith(QLatin1Char('\n')) || password.endsWith(QLatin1Char('\r')))
        password.chop(1);
    return password;
}

tl::expected<void, QString> openFile(QSqlDatabase& database, const AccountSettings& settings)
{
    if (auto made = makeFile(settings.fileName); !made)
        return made;
    if (!database.open())
        return tl::make_unexpected(reasonOf(database.lastError()));
    for (const char* setting : {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL", "PRAGMA foreign_keys = ON"}) {
        if (auto set = execute(database, QLatin1String(setting)); !set)
            return set;
    }
    return {};
}

tl::expected<void, QString> openServer(QSqlDatabase& database, const AccountSettings& settings)
{
    auto password = serverPassword(settings.passwordFile);
    if (!password)
        return tl::make_unexpected(password.error());
    // Given here and not to the connection's settings, which would keep it.
    const bool isOpen = database.open(settings.user, *password);
    sodium_memzero(password->data(), std::size_t(password->size()) * sizeof(QChar));
    if (!isOpen)
        return tl::make_unexpected(reasonOf(database.lastError()));
    return {};
}

/// A connection says that it is lost only when it is used.
bool isAlive(const QSqlDatabase& database, Driver driver)
{
    if (!database.isOpen())
        return false;
    return driver == Driver::Sqlite || ask(database, QStringLiteral("SELECT 1"));
}

} // namespace

namespace AccountConnection {

QString nameOf(const AccountSettings& settings)
{
    if (settings.driver == Driver::Sqlite)
        return QDir::toNativeSeparators(settings.fileName);
    return QStringLiteral("%1 at %2:%3").arg(settings.database, settings.host).arg(settings.port);
}

tl::expected<void, QString> add(const QString& connection, const AccountSettings& settings)
{
    const bool isFile = settings.driver == Driver::Sqlite;
    const QString driver = isFile ? QStringLiteral("QSQLITE") : QStringLiteral("QPSQL");
    if (!QSqlDatabase::isDriverAvailable(driver))
        return tl::make_unexpected(QStringLiteral("Qt's driver %1 is not installed").arg(driver));
    QSqlDatabase database = QSqlDatabase::addDatabase(driver, connection);
    database.setDatabaseName(isFile ? settings.fileName : settings.database);
    database.setConnectOptions(isFile ? QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000") : QLatin1String(serverOptions));
    database.setHostName(settings.host);
    database.setPort(settings.port);
    return {};
}

tl::expected<QSqlDatabase, QString> ready(const QString& connection, const AccountSettings& settings)
{
    QSqlDatabase database = QSqlDatabase::database(connection, false);
    if (isAlive(database, settings.driver))
        return database;
    database.close();
    auto opened = settings.driver == Driver::Sqlite ? openFile(database, settings) : openServer(database, settings);
    if (opened && !hasTables(database))
        opened = makeTables(database, settings.driver);
    if (!opened) {
        database.close();
        return tl::make_unexpected(opened.error());
    }
    return database;
}

} // namespace AccountConnection
