#include "host/accounts/accountdatabase.h"

#include "host/accounts/accountconnection_p.h"
#include "host/accounts/accounttables_p.h"
#include "host/accounts/passwordhash_p.h"
#include "host/runtime/sql_p.h"

namespace {

using Failed = tl::unexpected<QString>;
using Kind = AccountEvent::Kind;

tl::expected<void, QString> checkName(const QString& name)
{
    if (AccountTables::isGoodName(name))
        return {};
    if (name.isEmpty())
        return Failed(AccountDatabase::tr("A name is needed."));
    if (name.size() > AccountDatabase::longestName)
        return Failed(AccountDatabase::tr("A name may have %1 characters at most.").arg(AccountDatabase::longestName));
    return Failed(AccountDatabase::tr("A name must not have blanks around it or control characters in it."));
}

tl::expected<void, QString> checkRights(const EUserAccount& account)
{
    if (!accountRoleOf(account.role))
        return Failed(AccountDatabase::tr("There is no role \"%1\".").arg(account.role));
    for (const QString& area : account.areas) {
        if (area.isEmpty() || !QStringView(area).isValidUtf16())
            return Failed(AccountDatabase::tr("Each area needs a name."));
    }
    return {};
}

tl::expected<QByteArray, QString> hashOf(const QString& password)
{
    switch (PasswordHash::lengthOf(password)) {
    case PasswordHash::Length::Good:
        return PasswordHash::make(password);
    case PasswordHash::Length::TooShort:
        return Failed(
            AccountDatabase::tr("A password needs %1 characters at least.").arg(AccountDatabase::shortestPassword));
    case PasswordHash::Length::TooLong:
        break;
    }
    return Failed(AccountDatabase::tr("The password is too long."));
}

AccountEvent eventOf(Kind kind, const QString& name, qint32 number)
{
    AccountEvent event;
    event.kind = kind;
    event.account = name;
    event.number = number;
    return event;
}

} // namespace

AccountDatabase::AccountDatabase() = default;

AccountDatabase::~AccountDatabase()
{
    close();
}

tl::expected<void, QString> AccountDatabase::open(const AccountSettings& settings)
{
    close();
    m_settings = settings;
    const QString connection = newConnectionName("AccountDatabase");
    if (const auto added = AccountConnection::add(connection, settings); !added)
        return Failed(QStringLiteral("%1: %2").arg(AccountConnection::nameOf(settings), added.error()));
    m_connection = connection;
    return tables().map([](const AccountTables&) {});
}

void AccountDatabase::close()
{
    if (m_connection.isEmpty())
        return;
    closeDatabase(m_connection);
    m_connection.clear();
}

tl::expected<AccountTables, QString> AccountDatabase::tables() const
{
    if (m_connection.isEmpty())
        return Failed(tr("No database of user accounts is open."));
    const QString place = AccountConnection::nameOf(m_settings);
    const auto database = AccountConnection::ready(m_connection, m_settings);
    if (!database)
        return Failed(QStringLiteral("%1: %2").arg(place, database.error().trimmed()));
    return AccountTables(*database, place);
}

/// Makes a change of several statements and has it recorded, all of it or none.
tl::expected<void, QString> AccountDatabase::changeAll(const Change& change)
{
    const auto changed = tables();
    if (!changed)
        return Failed(changed.error());
    QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    Transaction transaction(database);
    const auto failure = [&] {
        return QStringLiteral("%1: %2").arg(AccountConnection::nameOf(m_settings),
                                            reasonOf(database.lastError()).trimmed());
    };
    if (!transaction.isOpen())
        return Failed(failure());
    auto made = changed->beginChange().and_then([&] { return change(*changed); });
    if (!made)
        return Failed(made.error());
    if (const auto recorded = record(*made); !recorded)
        return Failed(tr("%1; the account is as it was").arg(recorded.error()));
    if (transaction.commit())
        return {};
    made->isDone = false;
    made->text = failure();
    // What it fails with is told in any case.
    const auto corrected = record(*made);
    return Failed(corrected ? made->text : QStringLiteral("%1; %2").arg(made->text, corrected.error()));
}

tl::expected<void, QString> AccountDatabase::record(const AccountEvent& event) const
{
    return m_recorder ? m_recorder(event) : tl::expected<void, QString>();
}

EntityMultiResult<EUserAccount> AccountDatabase::allUserAccounts() const
{
    const auto accounts = tables().and_then([](const AccountTables& tables) { return tables.all(); });
    if (!accounts)
        return {{}, accounts.error()};
    return {*accounts, {}};
}

tl::expected<QList<EUserAccount>, QString> AccountDatabase::query(const QString& sql) const
{
    QString text = sql.simplified();
    if (text.endsWith(QLatin1Char(';')))
        text = text.chopped(1).trimmed();
    if (text.compare(QLatin1String("select * from SYSTEM_USER_ACCOUNT"), Qt::CaseInsensitive) != 0) {
        constexpr int mostShown = 200;
        return Failed(tr("User accounts are not given for the query \"%1\".").arg(sql.left(mostShown)));
    }
    return tables().and_then([](const AccountTables& tables) { return tables.all(); });
}

tl::expected<std::optional<EUserAccount>, QString> AccountDatabase::find(const QString& name) const
{
    return tables().and_then([&name](const AccountTables& tables) { return tables.find(name); });
}

tl::expected<qint32, QString> AccountDatabase::add(const EUserAccount& account, const QString& password)
{
    const auto hash = checkName(account.name).and_then([&] { return checkRights(account); }).and_then([&] {
        return hashOf(password);
    });
    if (!hash)
        return Failed(hash.error());
    qint32 number = 0;
    const auto added = changeAll([&](const AccountTables& tables) {
        return tables.insert(account, *hash).map([&](qint32 given) {
            number = given;
            AccountEvent event = eventOf(Kind::Add, account.name, given);
            event.after = AccountTables::rightsText(account);
            return event;
        });
    });
    return added.map([number] { return number; });
}

tl::expected<void, QString> AccountDatabase::change(const EUserAccount& account)
{
    if (auto good = checkRights(account); !good)
        return good;
    return changeAll([&account](const AccountTables& tables) -> tl::expected<AccountEvent, QString> {
        const auto before = tables.rightsOf(account.number);
        if (!before)
            return Failed(before.error());
        if (account.role != accountRoleName(AccountRole::Administrator)) {
            if (const auto allowed = tables.checkOthersAdminister(account.number); !allowed)
                return Failed(allowed.error());
        }
        AccountEvent event = eventOf(Kind::ChangeRights, before->name, account.number);
        event.before = before->text;
        event.after = AccountTables::rightsText(account);
        return tables.setRights(account).map([&event] { return event; });
    });
}

tl::expected<void, QString> AccountDatabase::remove(const QString& name)
{
    return changeAll([&name](const AccountTables& tables) -> tl::expected<AccountEvent, QString> {
        const auto number = tables.numberOf(name);
        if (!number)
            return Failed(number.error());
        const auto before = tables.rightsOf(*number);
        if (!before)
            return Failed(before.error());
        AccountEvent event = eventOf(Kind::Remove, name, *number);
        event.before = before->text;
        return tables.checkOthersAdminister(*number).and_then([&] { return tables.remove(*number); }).map([&event] {
            return event;
        });
    });
}

tl::expected<void, QString> AccountDatabase::setPassword(const QString& name, const QString& password)
{
    const auto hash = hashOf(password);
    if (!hash)
        return Failed(hash.error());
    return changeAll([&](const AccountTables& tables) {
        return tables.numberOf(name).and_then([&](qint32 number) {
            return tables.setHash(number, *hash).map([&] { return eventOf(Kind::SetPassword, name, number); });
        });
    });
}

tl::expected<void, QString> AccountDatabase::setLocked(const QString& name, bool locked)
{
    return changeAll([&](const AccountTables& tables) -> tl::expected<AccountEvent, QString> {
        const auto number = tables.numberOf(name);
        if (!number)
            return Failed(number.error());
        if (locked) {
            if (const auto allowed = tables.checkOthersAdminister(*number); !allowed)
                return Failed(allowed.error());
        }
        const Kind kind = locked ? Kind::Lock : Kind::Unlock;
        return tables.setLocked(*number, locked).map([&] { return eventOf(kind, name, *number); });
    });
}

tl::expected<bool, QString> AccountDatabase::isLocked(const QString& name) const
{
    return tables().and_then([&name](const AccountTables& tables) {
        return tables.numberOf(name).and_then([&tables](qint32 number) {
            return tables.locked().map([number](const QSet<qint32>& numbers) { return numbers.contains(number); });
        });
    });
}

tl::expected<QSet<qint32>, QString> AccountDatabase::lockedAccounts() const
{
    return tables().and_then([](const AccountTables& tables) { return tables.locked(); });
}

tl::expected<AccountDatabase::Secret, QString> AccountDatabase::secret(const QString& name) const
{
    return tables().and_then([&name](const AccountTables& tables) { return tables.secret(name); });
}
