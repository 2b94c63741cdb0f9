#include "host/checking/accountnumbers_p.h"

#include "host/runtime/sql_p.h"

#include <QFileInfo>

namespace {

std::optional<QSet<int>> numbersIn(const QSqlDatabase& database)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT NUMBER FROM SYSTEM_USER_ACCOUNT")))
        return std::nullopt;
    QSet<int> numbers;
    while (query.next())
        numbers.insert(query.value(0).toInt());
    return numbers;
}

} // namespace

std::optional<QSet<int>> AccountNumbers::read(const QString& fileName)
{
    if (!QFileInfo(fileName).isFile())
        return std::nullopt;
    const QString connection = newConnectionName("account-numbers");
    std::optional<QSet<int>> numbers;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(fileName);
        database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=2000"));
        if (database.open())
            numbers = numbersIn(database);
        database.close();
    }
    QSqlDatabase::removeDatabase(connection);
    return numbers;
}
