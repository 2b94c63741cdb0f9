#include "platform/database/euseraccount.h"
#include "platform/database/useraccountdatabase.h"

#include <QtTest>

#include <memory>

namespace {

EUserAccount kim()
{
    return {EUserAccount::State::Stored,
            7,
            QStringLiteral("kim"),
            QStringLiteral("operator"),
            {QStringLiteral("North"), QStringLiteral("South")}};
}

class Accounts : public UserAccountDatabase
{
public:
    EntityMultiResult<EUserAccount> allUserAccounts() const override { return result; }

    EntityMultiResult<EUserAccount> result;
};

} // namespace

class tst_EUserAccount : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { UserAccountDatabase::registerDatabase(nullptr); }

    void aDefaultAccount()
    {
        const EUserAccount account;
        QCOMPARE(account.state, EUserAccount::State::New);
        QCOMPARE(account.number, 0);
        QVERIFY(account.name.isEmpty() && account.role.isEmpty() && account.areas.isEmpty());
        QCOMPARE(sizeof account.number, std::size_t(4));
    }

    void everyFieldCountsForEquality()
    {
        const auto isEqualAfter = [](auto change) {
            EUserAccount other = kim();
            change(other);
            return kim().isEqual(other) || other.isEqual(kim());
        };
        QVERIFY(isEqualAfter([](EUserAccount&) {}));
        QVERIFY(!isEqualAfter([](EUserAccount& other) { other.state = EUserAccount::State::New; }));
        QVERIFY(!isEqualAfter([](EUserAccount& other) { other.number = 8; }));
        QVERIFY(!isEqualAfter([](EUserAccount& other) { other.name = QStringLiteral("Kim"); }));
        QVERIFY(!isEqualAfter([](EUserAccount& other) { other.role.clear(); }));
        QVERIFY(!isEqualAfter([](EUserAccount& other) { other.areas.removeLast(); }));
    }

    void copiesHaveEveryField()
    {
        const EUserAccount account = kim();
        const EUserAccount copy(account);
        EUserAccount assigned;
        assigned = account;
        QVERIFY(copy.isEqual(kim()) && assigned.isEqual(kim()));
        QVERIFY(QVariant::fromValue(account).value<EUserAccount>().isEqual(kim()));
    }

    void withoutADatabaseThereAreNoneAndItSaysSo()
    {
        QVERIFY(!UserAccountDatabase::registered());
        const EntityMultiResult<EUserAccount> all = EUserAccount::allUserAccount();
        QVERIFY(all.list.isEmpty());
        QVERIFY(!all.isOk());
        QVERIFY(!all.error.isEmpty());
    }

    void allAreThoseOfTheRegisteredDatabase()
    {
        Accounts database;
        database.result.list = {kim(), EUserAccount()};
        QVERIFY(!UserAccountDatabase::registered()); // making one registers nothing
        UserAccountDatabase::registerDatabase(&database);
        QCOMPARE(UserAccountDatabase::registered(), &database);
        const EntityMultiResult<EUserAccount> all = EUserAccount::allUserAccount();
        QVERIFY(all.isOk());
        QCOMPARE(all.list.size(), 2);
        QVERIFY(all.list.first().isEqual(kim()));
        QVERIFY(all.list.last().isEqual(EUserAccount()));
    }

    void whyADatabaseHasNoAnswerIsPassedOn()
    {
        Accounts database;
        database.result.error = QStringLiteral("accounts.db: the disk is full");
        UserAccountDatabase::registerDatabase(&database);
        QVERIFY(!EUserAccount::allUserAccount().isOk());
        QCOMPARE(EUserAccount::allUserAccount().error, QStringLiteral("accounts.db: the disk is full"));
    }

    void theLastRegistrationCountsUntilItIsTakenBack()
    {
        Accounts first;
        Accounts second;
        UserAccountDatabase::registerDatabase(&first);
        UserAccountDatabase::registerDatabase(&second);
        QCOMPARE(UserAccountDatabase::registered(), &second);
        UserAccountDatabase::registerDatabase(nullptr);
        QVERIFY(!UserAccountDatabase::registered());
        QVERIFY(!EUserAccount::allUserAccount().isOk());
    }

    void aDatabaseThatEndsTakesItselfOff()
    {
        auto first = std::make_unique<Accounts>();
        auto second = std::make_unique<Accounts>();
        UserAccountDatabase::registerDatabase(first.get());
        second.reset(); // another one's end changes nothing
        QCOMPARE(UserAccountDatabase::registered(), first.get());
        first.reset();
        QVERIFY(!UserAccountDatabase::registered());
        QVERIFY(!EUserAccount::allUserAccount().isOk());
    }
};

QTEST_GUILESS_MAIN(tst_EUserAccount)
#include "tst_euseraccount.moc"
