#include "host/accounts/accounttables_p.h"

#include "host/accounts/passwordhash_p.h"
#include "host/runtime/sql_p.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

/// An area may hold any character, so no separator would do.
QString textOf(const QStringList& areas)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray::fromStringList(areas)).toJson(QJsonDocument::Compact));
}

QString rightsText(const QString& role, const QString& areas)
{
    if (areas == textOf(QStringList()))
        return QStringLiteral("%1, all areas").arg(role);
    return QStringLiteral("%1, areas %2").arg(role, areas);
}

tl::unexpected<QString> noSuchNumber(qint32 number)
{
    return tl::make_unexpected(AccountDatabase::tr("There is no user number %1.").arg(number));
}

std::optional<QStringList> areasOf(const QString& text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (!document.isArray())
        return std::nullopt;
    QStringList areas;
    const QJsonArray array = document.array();
    for (const QJsonValue& each : array)
        areas.append(each.toString());
    if (areas.contains(QString())) // was none, or no text
        return std::nullopt;
    return areas;
}

} // namespace

bool AccountTables::isGoodName(const QString& name)
{
    const auto isControl = [](QChar each) { return each.category() == QChar::Other_Control; };
    return !name.isEmpty() && name.size() <= AccountDatabase::longestName && name == name.trimmed() &&
           QStringView(name).isValidUtf16() && std::none_of(name.begin(), name.end(), isControl);
}

/// Runs one statement with its values bound.
tl::expected<QSqlQuery, QString> AccountTables::run(const char* text, const QVariantList& values) const
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    bool isDone = query.prepare(QLatin1String(text));
    for (const QVariant& value : values)
        query.addBindValue(value);
    isDone = isDone && query.exec();
    if (!isDone)
        return tl::make_unexpected(QStringLiteral("%1: %2").arg(m_place, reasonOf(query).trimmed()));
    return query;
}

tl::expected<void, QString> AccountTables::write(const char* text, const QVariantList& values) const
{
    return run(text, values).map([](const QSqlQuery&) {});
}

tl::expected<EUserAccount, QString> AccountTables::accountOf(const QSqlQuery& row) const
{
    EUserAccount account;
    account.state = EUserAccount::State::Stored;
    account.number = row.value(0).toInt();
    account.name = row.value(1).toString();
    account.role = row.value(2).toString();
    const auto areas = areasOf(row.value(3).toString());
    if (!areas) {
        return tl::make_unexpected(QStringLiteral("%1: %2").arg(
            m_place, AccountDatabase::tr("the areas of user \"%1\" can't be read").arg(account.name)));
    }
    account.areas = *areas;
    return account;
}

tl::expected<QList<EUserAccount>, QString> AccountTables::all() const
{
    auto query = run("SELECT NUMBER, NAME, ROLE, AREAS FROM SYSTEM_USER_ACCOUNT ORDER BY NUMBER");
    if (!query)
        return tl::make_unexpected(query.error());
    QList<EUserAccount> accounts;
    while (query->next()) {
        const auto account = accountOf(*query);
        if (!account)
            return tl::make_unexpected(account.error());
        accounts.append(*account);
    }
    return accounts;
}

tl::expected<std::optional<EUserAccount>, QString> AccountTables::find(const QString& name) const
{
    if (!isGoodName(name)) // no database takes NUL
        return std::optional<EUserAccount>();
    auto query = run("SELECT NUMBER, NAME, ROLE, AREAS FROM SYSTEM_USER_ACCOUNT WHERE NAME = ?", {name});
    if (!query)
        return tl::make_unexpected(query.error());
    if (!query->next())
        return std::optional<EUserAccount>();
    return accountOf(*query).map([](const EUserAccount& account) { return std::optional<EUserAccount>(account); });
}

tl::expected<qint32, QString> AccountTables::numberOf(const QString& name) const
{
    const auto noSuch = [&name] {
        const QString shown = name.left(AccountDatabase::longestName);
        return tl::make_unexpected(AccountDatabase::tr("There is no user \"%1\".").arg(shown));
    };
    if (!isGoodName(name))
        return noSuch();
    auto query = run("SELECT NUMBER FROM SYSTEM_USER_ACCOUNT WHERE NAME = ?", {name});
    if (!query)
        return tl::make_unexpected(query.error());
    if (!query->next())
        return noSuch();
    return query->value(0).toInt();
}

tl::expected<AccountTables::Rights, QString> AccountTables::rightsOf(qint32 number) const
{
    auto query = run("SELECT NAME, ROLE, AREAS FROM SYSTEM_USER_ACCOUNT WHERE NUMBER = ?", {number});
    if (!query)
        return tl::make_unexpected(query.error());
    if (!query->next())
        return noSuchNumber(number);
    return Rights{query->value(0).toString(), ::rightsText(query->value(1).toString(), query->value(2).toString())};
}

QString AccountTables::rightsText(const EUserAccount& account)
{
    return ::rightsText(account.role, textOf(account.areas));
}

tl::expected<QSet<qint32>, QString> AccountTables::locked() const
{
    return run("SELECT NUMBER FROM SYSTEM_USER_PASSWORD WHERE LOCKED <> 0").map([](QSqlQuery query) {
        QSet<qint32> numbers;
        while (query.next())
            numbers.insert(query.value(0).toInt());
        return numbers;
    });
}

tl::expected<AccountDatabase::Secret, QString> AccountTables::secret(const QString& name) const
{
    AccountDatabase::Secret nobody{PasswordHash::ofNobody()};
    if (!isGoodName(name))
        return nobody;
    return run("SELECT P.HASH, P.LOCKED FROM SYSTEM_USER_ACCOUNT A JOIN SYSTEM_USER_PASSWORD P ON A.NUMBER = P.NUMBER "
               "WHERE A.NAME = ?",
               {name})
        .map([&nobody](QSqlQuery query) {
            if (!query.next())
                return nobody;
            return AccountDatabase::Secret{query.value(0).toString().toLatin1(), true, query.value(1).toInt() != 0};
        });
}

tl::expected<void, QString> AccountTables::beginChange() const
{
    return write("UPDATE SYSTEM_USER_NUMBER SET LAST_NUMBER = LAST_NUMBER WHERE ID = ?", {1});
}

tl::expected<qint32, QString> AccountTables::insert(const EUserAccount& account, const QByteArray& hash) const
{
    auto same = run("SELECT NUMBER FROM SYSTEM_USER_ACCOUNT WHERE NAME = ?", {account.name});
    if (!same)
        return tl::make_unexpected(same.error());
    if (same->next())
        return tl::make_unexpected(AccountDatabase::tr("There is a user \"%1\" already.").arg(account.name));
    auto last = run("SELECT LAST_NUMBER FROM SYSTEM_USER_NUMBER WHERE ID = ?", {1});
    if (!last)
        return tl::make_unexpected(last.error());
    const qint32 number = last->next() ? last->value(0).toInt() + 1 : 1;
    return write("UPDATE SYSTEM_USER_NUMBER SET LAST_NUMBER = ? WHERE ID = ?", {number, 1})
        .and_then([&] {
            return write("INSERT INTO SYSTEM_USER_ACCOUNT (NUMBER, NAME, ROLE, AREAS) VALUES (?, ?, ?, ?)",
                         {number, account.name, account.role, textOf(account.areas)});
        })
        .and_then([&] {
            return write("INSERT INTO SYSTEM_USER_PASSWORD (NUMBER, HASH, LOCKED) VALUES (?, ?, 0)",
                         {number, QString::fromLatin1(hash)});
        })
        .map([number] { return number; });
}

tl::expected<void, QString> AccountTables::setRights(const EUserAccount& account) const
{
    return run("UPDATE SYSTEM_USER_ACCOUNT SET ROLE = ?, AREAS = ? WHERE NUMBER = ?",
               {account.role, textOf(account.areas), account.number})
        .and_then([&account](const QSqlQuery& query) -> tl::expected<void, QString> {
            if (query.numRowsAffected() == 1)
                return {};
            return noSuchNumber(account.number);
        });
}

tl::expected<void, QString> AccountTables::setHash(qint32 number, const QByteArray& hash) const
{
    return write("UPDATE SYSTEM_USER_PASSWORD SET HASH = ? WHERE NUMBER = ?", {QString::fromLatin1(hash), number});
}

tl::expected<void, QString> AccountTables::setLocked(qint32 number, bool locked) const
{
    return write("UPDATE SYSTEM_USER_PASSWORD SET LOCKED = ? WHERE NUMBER = ?", {locked ? 1 : 0, number});
}

tl::expected<void, QString> AccountTables::remove(qint32 number) const
{
    return write("DELETE FROM SYSTEM_USER_PASSWORD WHERE NUMBER = ?", {number}).and_then([&] {
        return write("DELETE FROM SYSTEM_USER_ACCOUNT WHERE NUMBER = ?", {number});
    });
}

tl::expected<void, QString> AccountTables::checkOthersAdminister(qint32 number) const
{
    auto query = run("SELECT A.NUMBER FROM SYSTEM_USER_ACCOUNT A JOIN SYSTEM_USER_PASSWORD P ON A.NUMBER = P.NUMBER "
                     "WHERE A.ROLE = ? AND P.LOCKED = 0",
                     {accountRoleName(AccountRole::Administrator)});
    if (!query)
        return tl::make_unexpected(query.error());
    bool isOne = false;
    bool areOthers = false;
    while (query->next())
        (query->value(0).toInt() == number ? isOne : areOthers) = true;
    if (isOne && !areOthers)
        return tl::make_unexpected(AccountDatabase::tr("This is the last administrator who can log on."));
    return {};
}
