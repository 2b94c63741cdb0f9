#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <tl/expected.hpp>

#include <atomic>

/// The database's own words for what went wrong.
inline QString reasonOf(const QSqlError& error)
{
    return error.databaseText().isEmpty() ? error.text() : error.databaseText();
}
inline QString reasonOf(const QSqlQuery& query)
{
    return reasonOf(query.lastError());
}

inline tl::expected<void, QString> execute(QSqlDatabase& database, const QString& text)
{
    QSqlQuery query(database);
    if (!query.exec(text))
        return tl::make_unexpected(reasonOf(query));
    return {};
}

/// The one value that a query answers.
inline tl::expected<QVariant, QString> ask(const QSqlDatabase& database, const QString& text)
{
    QSqlQuery query(database);
    if (!query.exec(text) || !query.next())
        return tl::make_unexpected(reasonOf(query));
    return query.value(0);
}

/// A name that no other connection of this program has.
inline QString newConnectionName(const char* owner)
{
    static std::atomic<int> made{0};
    return QStringLiteral("%1-%2").arg(QLatin1String(owner)).arg(++made);
}

/// Opens an SQLite file, or makes a new one, under a connection of that name; to be ended by closeDatabase(), opened or not.
/// \param options of the driver, each with a semicolon in front
inline tl::expected<QSqlDatabase, QString> openSqlite(const QString& connection, const QString& fileName,
                                                      const QString& options = {})
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    if (!database.isValid())
        return tl::make_unexpected(QStringLiteral("Qt's driver QSQLITE is not installed"));
    database.setDatabaseName(fileName);
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000") + options);
    if (!database.open())
        return tl::make_unexpected(reasonOf(database.lastError()));
    return database;
}

/// Ends a connection of that name, whatever database it is to.
inline void closeDatabase(const QString& connection)
{
    QSqlDatabase::database(connection, false).close();
    QSqlDatabase::removeDatabase(connection);
}

/// A transaction that is taken back unless it is committed.
class Transaction
{
public:
    explicit Transaction(QSqlDatabase& database) : m_database(database), m_isOpen(database.transaction()) {}
    ~Transaction()
    {
        if (m_isOpen)
            m_database.rollback();
    }
    Q_DISABLE_COPY(Transaction)

    /// Whether it began: statements would be written one by one otherwise.
    bool isOpen() const { return m_isOpen; }

    tl::expected<void, QString> commit()
    {
        if (!m_isOpen || !m_database.commit())
            return tl::make_unexpected(reasonOf(m_database.lastError()));
        m_isOpen = false;
        return {};
    }

private:
    QSqlDatabase& m_database;
    bool m_isOpen;
};
