#include "host/accounts/accountdatabase.h"
#include "host/accounts/passwordhash_p.h"
#include "host/core/korvanecore.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"
#include "tests/support/accountplaces.h"

#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <cstdio>

namespace {

using Driver = AccountSettings::Driver;

EUserAccount account(const QString& name, AccountRole role = AccountRole::Operator, const QStringList& areas = {})
{
    EUserAccount made;
    made.name = name;
    made.role = accountRoleName(role);
    made.areas = areas;
    return made;
}

const QString password = QStringLiteral("open sesame");

/// Adds an account or says why not.
QString problemOf(AccountDatabase& database, const EUserAccount& added, const QString& itsPassword = password)
{
    const auto number = database.add(added, itsPassword);
    return number ? QString() : number.error();
}

QString problemOf(const tl::expected<void, QString>& result)
{
    return result ? QString() : result.error();
}

QStringList namesOf(const AccountDatabase& database)
{
    const auto all = database.allUserAccounts();
    if (!all.isOk())
        return {all.error};
    QStringList names;
    for (const EUserAccount& each : all.list)
        names.append(each.name);
    return names;
}

/// "KIND ACCOUNT NUMBER OUTCOME [BEFORE] [AFTER]"
QString lineOf(const AccountEvent& event)
{
    return QStringLiteral("%1 %2 %3 %4 [%5] [%6]")
        .arg(AccountEvent::nameOf(event.kind), event.account)
        .arg(event.number)
        .arg(event.isDone ? QStringLiteral("done") : QStringLiteral("refused"), event.before, event.after);
}

/// Runs an SQL text on a file beside the code under test.
void runOnFile(const QString& fileName, const QString& text)
{
    const QString connection = QStringLiteral("beside");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(fileName);
        QSqlQuery query(database);
        if (!database.open() || !query.exec(text))
            qFatal("%s", qPrintable(text));
    }
    QSqlDatabase::removeDatabase(connection);
}

/// What the program does as a child: adds accounts and tells each number, until it is killed.
int addAccounts(const QString& fileName)
{
    AccountSettings settings;
    settings.fileName = fileName;
    AccountDatabase database;
    if (!database.open(settings))
        return 1;
    for (;;) {
        const auto before = database.allUserAccounts().list;
        const int next = before.isEmpty() ? 1 : before.last().number + 1;
        const auto number = database.add(account(QStringLiteral("user%1").arg(next)), password);
        if (!number)
            return 2;
        std::printf("%d\n", *number);
        std::fflush(stdout);
    }
}

} // namespace

class tst_AccountDatabase : public QObject
{
    Q_OBJECT

private:
    AccountPlaces m_places;

    static void addDatabases()
    {
        QTest::addColumn<int>("driver");
        QTest::newRow("SQLite") << int(Driver::Sqlite);
        if (PostgresCluster::isInstalled())
            QTest::newRow("PostgreSQL") << int(Driver::PostgreSql);
    }
    AccountSettings newPlace()
    {
        return m_places.next(Driver(*static_cast<int*>(QTest::qData("driver", qMetaTypeId<int>()))));
    }

private Q_SLOTS:
    void postgresIsThere()
    {
        if (!PostgresCluster::isInstalled())
            QSKIP("PostgreSQL's server is not installed: the rows with it are left out");
    }

    void anAccountIsKept_data() { addDatabases(); }
    void anAccountIsKept()
    {
        const AccountSettings place = newPlace();
        const QStringList areas{QStringLiteral("north, \"1\""), QStringLiteral("\ud55c\uae00\n;[]"),
                                QString(1, QChar(0)) + QStringLiteral("x'")};
        {
            AccountDatabase database;
            QCOMPARE(problemOf(database.open(place)), QString());
            QCOMPARE(namesOf(database), QStringList());
            QCOMPARE(database.add(account(QStringLiteral("anna"), AccountRole::Supervisor, areas), password).value(),
                     1);
            QCOMPARE(database.add(account(QStringLiteral("bob")), password).value(), 2);
        }
        AccountDatabase database;
        QCOMPARE(problemOf(database.open(place)), QString());
        const auto all = database.allUserAccounts();
        QVERIFY2(all.isOk(), qPrintable(all.error));
        QCOMPARE(all.list.size(), 2);
        const EUserAccount anna{EUserAccount::State::Stored, 1, QStringLiteral("anna"), QStringLiteral("supervisor"),
                                areas};
        const EUserAccount bob{EUserAccount::State::Stored, 2, QStringLiteral("bob"), QStringLiteral("operator"), {}};
        QVERIFY(all.list.at(0).isEqual(anna));
        QVERIFY(all.list.at(1).isEqual(bob));
        QVERIFY(database.find(QStringLiteral("anna")).value()->isEqual(anna));
    }

    void namesAreComparedAsTheyAre_data() { addDatabases(); }
    void namesAreComparedAsTheyAre()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        QCOMPARE(problemOf(database, account(QStringLiteral("anna"))), QString());
        for (const QString& other : {QStringLiteral("Anna"), QStringLiteral("anna "), QStringLiteral("ann"), QString(),
                                     QStringLiteral("anna") + QChar(0), QStringLiteral("%"),
                                     QStringLiteral("' OR ''='"), QString(10000000, QLatin1Char('a'))}) {
            QVERIFY(!database.find(other).value());
            const auto secret = database.secret(other);
            QVERIFY(secret && !secret->isKnown);
        }
        QCOMPARE(problemOf(database, account(QStringLiteral("Anna"))), QString()); // is another one
        QVERIFY(database.find(QStringLiteral("anna")).value());
    }

    void oddNamesStayWhatTheyAre_data() { addDatabases(); }
    void oddNamesStayWhatTheyAre()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        const QStringList names{QStringLiteral("O'Brien \"Bob\""),
                                QStringLiteral("'; DROP TABLE SYSTEM_USER_ACCOUNT; --"),
                                QStringLiteral("a\\'b\\\\"),
                                QStringLiteral("$1 ? :name %1 {}"),
                                QStringLiteral("\ud55c\uae00 \U0001F600"),
                                QString(64, QLatin1Char('x'))};
        for (const QString& name : names)
            QCOMPARE(problemOf(database, account(name)), QString());
        QCOMPARE(namesOf(database), names);
        for (const QString& name : names) {
            QCOMPARE(database.find(name).value()->name, name);
            QVERIFY(database.setLocked(name, true));
            QVERIFY(database.secret(name).value().isLocked);
            QVERIFY(database.remove(name));
            QVERIFY(!database.find(name).value());
        }
        QCOMPARE(namesOf(database), QStringList());
    }

    void badAccountsAreRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("role");
        QTest::addColumn<QStringList>("areas");
        QTest::addColumn<QString>("itsPassword");
        QTest::addColumn<QString>("problem");
        const QString role = QStringLiteral("operator");
        const auto nameRow = [&role](const char* title, const QString& name, const char* problem) {
            QTest::newRow(title) << name << role << QStringList() << password << QString::fromLatin1(problem);
        };
        const char* blanks = "A name must not have blanks around it or control characters in it.";
        nameRow("no name", {}, "A name is needed.");
        nameRow("a name that is too long", QString(65, QLatin1Char('x')), "A name may have 64 characters at most.");
        nameRow("10 MB", QString(10000000, QLatin1Char('x')), "A name may have 64 characters at most.");
        nameRow("a blank before", QStringLiteral(" anna"), blanks);
        nameRow("a wide blank behind", QStringLiteral("anna\u3000"), blanks);
        nameRow("nothing but a blank", QStringLiteral(" "), blanks);
        nameRow("a line break", QStringLiteral("an\nna"), blanks);
        nameRow("NUL", QStringLiteral("an") + QChar(0) + QStringLiteral("na"), blanks);
        nameRow("half a character", QStringLiteral("anna") + QChar(0xd800), blanks);
        nameRow("a name that is taken", QStringLiteral("first"), "There is a user \"first\" already.");
        QTest::newRow("no role") << QStringLiteral("anna") << QString() << QStringList() << password
                                 << QStringLiteral("There is no role \"\".");
        QTest::newRow("an unknown role") << QStringLiteral("anna") << QStringLiteral("Operator") << QStringList()
                                         << password << QStringLiteral("There is no role \"Operator\".");
        QTest::newRow("an empty area") << QStringLiteral("anna") << role << QStringList{QStringLiteral("a"), QString()}
                                       << password << QStringLiteral("Each area needs a name.");
        QTest::newRow("no password") << QStringLiteral("anna") << role << QStringList() << QString()
                                     << QStringLiteral("A password needs 8 characters at least.");
        QTest::newRow("a short password")
            << QStringLiteral("anna") << role << QStringList() << QStringLiteral("1234567")
            << QStringLiteral("A password needs 8 characters at least.");
        QTest::newRow("a long password") << QStringLiteral("anna") << role << QStringList()
                                         << QString(1025, QLatin1Char('x'))
                                         << QStringLiteral("The password is too long.");
    }
    void badAccountsAreRefused()
    {
        QFETCH(QString, name);
        QFETCH(QString, role);
        QFETCH(QStringList, areas);
        QFETCH(QString, itsPassword);
        QFETCH(QString, problem);
        AccountDatabase database;
        QVERIFY(database.open(m_places.file()));
        QCOMPARE(problemOf(database, account(QStringLiteral("first"))), QString());
        EUserAccount bad;
        bad.name = name;
        bad.role = role;
        bad.areas = areas;
        QCOMPARE(problemOf(database, bad, itsPassword), problem);
        QCOMPARE(namesOf(database), QStringList({QStringLiteral("first")}));
        QCOMPARE(database.add(account(QStringLiteral("next")), password).value(), 2); // no number was lost
    }

    void numbersAreNeverGivenTwice_data() { addDatabases(); }
    void numbersAreNeverGivenTwice()
    {
        const AccountSettings place = newPlace();
        const QString name = QStringLiteral("anna");
        for (int expected = 1; expected <= 3; ++expected) {
            AccountDatabase database;
            QVERIFY(database.open(place));
            QCOMPARE(database.add(account(name), password).value(), expected);
            QVERIFY(database.remove(name));
            QCOMPARE(namesOf(database), QStringList());
        }
    }

    void twoWorkplacesAddInTurn_data() { addDatabases(); }
    void twoWorkplacesAddInTurn()
    {
        const AccountSettings place = newPlace();
        AccountDatabase one;
        AccountDatabase other;
        QVERIFY(one.open(place));
        QVERIFY(other.open(place));
        QCOMPARE(one.add(account(QStringLiteral("anna")), password).value(), 1);
        QCOMPARE(other.add(account(QStringLiteral("bob")), password).value(), 2);
        QCOMPARE(problemOf(one, account(QStringLiteral("bob"))), QStringLiteral("There is a user \"bob\" already."));
        QCOMPARE(namesOf(one), namesOf(other));
    }

    void roleAndAreasChange_data() { addDatabases(); }
    void roleAndAreasChange()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        QVERIFY(database.add(account(QStringLiteral("anna")), password));
        EUserAccount changed =
            account(QStringLiteral("not her name"), AccountRole::Engineer, {QStringLiteral("south")});
        changed.number = 1;
        QCOMPARE(problemOf(database.change(changed)), QString());
        const EUserAccount found = *database.find(QStringLiteral("anna")).value();
        QCOMPARE(found.role, QStringLiteral("engineer"));
        QCOMPARE(found.areas, QStringList({QStringLiteral("south")}));
        changed.role = QStringLiteral("king");
        QCOMPARE(problemOf(database.change(changed)), QStringLiteral("There is no role \"king\"."));
        changed.role = found.role;
        changed.number = 2;
        QCOMPARE(problemOf(database.change(changed)), QStringLiteral("There is no user number 2."));
        QVERIFY(database.find(QStringLiteral("anna")).value()->isEqual(found));
    }

    void aPasswordChanges_data() { addDatabases(); }
    void aPasswordChanges()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        const QString name = QStringLiteral("anna");
        QVERIFY(database.add(account(name), password));
        const auto isRight = [&](const QString& tried) {
            return PasswordHash::verify(database.secret(name).value().hash, tried).value();
        };
        QVERIFY(isRight(password));
        QCOMPARE(problemOf(database.setPassword(name, QStringLiteral("1234567"))),
                 QStringLiteral("A password needs 8 characters at least."));
        QVERIFY(isRight(password));
        QVERIFY(database.setPassword(name, QStringLiteral("close sesame")));
        QVERIFY(!isRight(password));
        QVERIFY(isRight(QStringLiteral("close sesame")));
    }

    void accountsAreLocked_data() { addDatabases(); }
    void accountsAreLocked()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        const QString name = QStringLiteral("anna");
        QVERIFY(database.add(account(name), password));
        QCOMPARE(database.isLocked(name).value(), false);
        QVERIFY(database.setLocked(name, true));
        QCOMPARE(database.isLocked(name).value(), true);
        QVERIFY(database.add(account(QStringLiteral("bob")), password));
        QCOMPARE(database.lockedAccounts().value(), QSet<qint32>{1});
        QVERIFY(database.secret(name).value().isLocked);
        QVERIFY(database.setLocked(name, false));
        QCOMPARE(database.isLocked(name).value(), false);
        QVERIFY(!database.secret(name).value().isLocked);
    }

    void everyChangeIsAccountedFor_data() { addDatabases(); }
    void everyChangeIsAccountedFor()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        const QString bob = QStringLiteral("bob");
        QVERIFY(database.add(account(QStringLiteral("anna"), AccountRole::Administrator), password)); // to nobody
        QStringList told;
        database.setRecorder([&told](const AccountEvent& event) -> tl::expected<void, QString> {
            told.append(lineOf(event));
            return {};
        });
        QVERIFY(database.add(account(bob, AccountRole::Operator, {QStringLiteral("a \"b\"")}), password));
        EUserAccount changed = account(QStringLiteral("not his name"), AccountRole::Viewer);
        changed.number = 2;
        QVERIFY(database.change(changed));
        QVERIFY(database.setPassword(bob, QStringLiteral("another password")));
        QVERIFY(database.setLocked(bob, true));
        QVERIFY(database.setLocked(bob, false));
        QVERIFY(database.remove(bob));
        const QStringList all = told;
        QCOMPARE(all.join(QLatin1Char('\n')),
                 QStringLiteral("addAccount bob 2 done [] [operator, areas [\"a \\\"b\\\"\"]]\n"
                                "changeAccount bob 2 done [operator, areas [\"a \\\"b\\\"\"]] [viewer, all areas]\n"
                                "setPassword bob 2 done [] []\n"
                                "lockAccount bob 2 done [] []\n"
                                "unlockAccount bob 2 done [] []\n"
                                "removeAccount bob 2 done [viewer, all areas] []"));
        // What is not done is nobody's doing.
        QVERIFY(!database.remove(bob));
        QVERIFY(!database.setLocked(QStringLiteral("anna"), true));
        QVERIFY(!database.setPassword(QStringLiteral("anna"), QStringLiteral("short")));
        QVERIFY(!database.change(changed));
        QVERIFY(!database.add(account(QStringLiteral("anna")), password));
        QCOMPARE(told, all);
    }

    void whatCantBeAccountedForIsNotDone_data() { addDatabases(); }
    void whatCantBeAccountedForIsNotDone()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        const QString anna = QStringLiteral("anna");
        const QString bob = QStringLiteral("bob");
        QVERIFY(database.add(account(anna, AccountRole::Administrator), password));
        QVERIFY(database.add(account(bob), password));
        const QByteArray hash = database.secret(bob).value().hash;
        const auto before = database.allUserAccounts().list;
        database.setRecorder(
            [](const AccountEvent&) { return tl::make_unexpected(QStringLiteral("the disk is full")); });
        const QString reason = QStringLiteral("the disk is full; the account is as it was");
        EUserAccount changed = account(bob, AccountRole::Viewer);
        changed.number = 2;
        QCOMPARE(problemOf(database, account(QStringLiteral("carl"))), reason);
        QCOMPARE(problemOf(database.change(changed)), reason);
        QCOMPARE(problemOf(database.setPassword(bob, QStringLiteral("another password"))), reason);
        QCOMPARE(problemOf(database.setLocked(bob, true)), reason);
        QCOMPARE(problemOf(database.remove(bob)), reason);
        const auto after = database.allUserAccounts().list;
        QCOMPARE(after.size(), before.size());
        for (int place = 0; place < after.size(); ++place)
            QVERIFY(after[place].isEqual(before[place]));
        QCOMPARE(database.secret(bob).value().hash, hash);
        QVERIFY(!database.isLocked(bob).value());
        database.setRecorder({});
        QCOMPARE(database.add(account(QStringLiteral("carl")), password).value(), 3); // nothing holds it up
    }

    void aChangeThatFailsAtItsEndIsAccountedForAsSuch()
    {
        const AccountSettings place = m_places.file();
        AccountDatabase database;
        QVERIFY(database.open(place));
        const QString bob = QStringLiteral("bob");
        QVERIFY(database.add(account(bob), password));
        // Something else of the plant counts on the account, which is looked at when the change ends.
        runOnFile(place.fileName, QStringLiteral("CREATE TABLE KEPT (NUMBER INTEGER REFERENCES "
                                                 "SYSTEM_USER_ACCOUNT(NUMBER) DEFERRABLE INITIALLY DEFERRED)"));
        runOnFile(place.fileName, QStringLiteral("INSERT INTO KEPT VALUES (1)"));
        QStringList told;
        database.setRecorder([&told](const AccountEvent& event) -> tl::expected<void, QString> {
            told.append(lineOf(event) + QLatin1Char(' ') + event.text);
            return {};
        });
        const QString reason = place.fileName + QStringLiteral(": FOREIGN KEY constraint failed");
        QCOMPARE(problemOf(database.remove(bob)), reason);
        QCOMPARE(namesOf(database), QStringList{bob});
        QCOMPARE(told, (QStringList{QStringLiteral("removeAccount bob 1 done [operator, all areas] [] "),
                                    QStringLiteral("removeAccount bob 1 refused [operator, all areas] [] ") + reason}));
    }

    void whoIsNotThereIsToldSo_data() { addDatabases(); }
    void whoIsNotThereIsToldSo()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        QVERIFY(database.add(account(QStringLiteral("anna")), password));
        for (const QString& name : {QStringLiteral("bob"), QStringLiteral("bob") + QChar(0)}) {
            const QString problem = QStringLiteral("There is no user \"%1\".").arg(name);
            QCOMPARE(problemOf(database.remove(name)), problem);
            QCOMPARE(problemOf(database.setPassword(name, password)), problem);
            QCOMPARE(problemOf(database.setLocked(name, true)), problem);
            QCOMPARE(database.isLocked(name).error(), problem);
        }
    }

    void theLastAdministratorStays_data() { addDatabases(); }
    void theLastAdministratorStays()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        const QString problem = QStringLiteral("This is the last administrator who can log on.");
        const QString anna = QStringLiteral("anna");
        const QString bob = QStringLiteral("bob");
        QVERIFY(database.add(account(anna, AccountRole::Administrator), password));
        QVERIFY(database.add(account(bob), password));
        const auto change = [&database](int number, AccountRole role) {
            EUserAccount changed = account({}, role);
            changed.number = number;
            return problemOf(database.change(changed));
        };
        QCOMPARE(problemOf(database.remove(anna)), problem);
        QCOMPARE(problemOf(database.setLocked(anna, true)), problem);
        QCOMPARE(change(1, AccountRole::Engineer), problem);
        QCOMPARE(change(1, AccountRole::Administrator), QString()); // areas may change
        QCOMPARE(change(2, AccountRole::Administrator), QString());
        QVERIFY(database.setLocked(bob, true)); // one who is locked does not count
        QCOMPARE(problemOf(database.remove(anna)), problem);
        QVERIFY(database.setLocked(bob, false));
        QCOMPARE(change(1, AccountRole::Viewer), QString());
        QCOMPARE(problemOf(database.remove(bob)), problem);
        QVERIFY(database.find(bob).value());
        QVERIFY(database.remove(anna));
    }

    void aSecretOfNobodyLooksLikeAnyOther_data() { addDatabases(); }
    void aSecretOfNobodyLooksLikeAnyOther()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        QVERIFY(database.add(account(QStringLiteral("anna")), password));
        const auto known = database.secret(QStringLiteral("anna")).value();
        const auto unknown = database.secret(QStringLiteral("bob")).value();
        QVERIFY(known.isKnown);
        QVERIFY(!unknown.isKnown);
        QCOMPARE(unknown.hash.size(), known.hash.size());
        QCOMPARE(unknown.hash.left(30), known.hash.left(30));
    }

    void onlyTheOneQueryIsAnswered_data() { addDatabases(); }
    void onlyTheOneQueryIsAnswered()
    {
        AccountDatabase database;
        QVERIFY(database.open(newPlace()));
        QVERIFY(database.add(account(QStringLiteral("anna")), password));
        for (const char* sql : {"select * from SYSTEM_USER_ACCOUNT", "SELECT * FROM system_user_account;",
                                "  select\t*\n from  System_User_Account ; "}) {
            const auto found = database.query(QString::fromLatin1(sql));
            QVERIFY2(found, sql);
            QCOMPARE(found->size(), 1);
        }
        for (const char* sql : {"", ";", "select * from SYSTEM_USER_PASSWORD", "select NAME from SYSTEM_USER_ACCOUNT",
                                "select * from SYSTEM_USER_ACCOUNT where 1=1",
                                "select * from SYSTEM_USER_ACCOUNT; drop table SYSTEM_USER_ACCOUNT",
                                "select * from SYSTEM_USER_ACCOUNT;;", "select*from SYSTEM_USER_ACCOUNT",
                                "delete from SYSTEM_USER_ACCOUNT", "select * from SYSTEM_USER_ACCOUNT -- x"}) {
            const auto found = database.query(QString::fromLatin1(sql));
            QVERIFY2(!found, sql);
            QCOMPARE(found.error(),
                     QStringLiteral("User accounts are not given for the query \"%1\".").arg(QString::fromLatin1(sql)));
        }
        QVERIFY(!database.query(QStringLiteral("x").repeated(10000000)));
        QCOMPARE(namesOf(database), QStringList({QStringLiteral("anna")}));
    }

    void theDataServiceAndTheRecordReadTheTables_data() { addDatabases(); }
    void theDataServiceAndTheRecordReadTheTables()
    {
        AccountDatabase accounts;
        QVERIFY(accounts.open(newPlace()));
        QVERIFY(accounts.add(account(QStringLiteral("anna"), AccountRole::Engineer, {QStringLiteral("a")}), password));
        QVERIFY(accounts.add(account(QStringLiteral("bob")), password));

        KorvaneCore core;
        RuntimeDatabase runtime;
        DataService service(runtime, *core.scadaCoreInterface());
        QList<EUserAccount> found;
        QVERIFY(!service.queryUserAccounts(QStringLiteral("select * from SYSTEM_USER_ACCOUNT"), found));
        service.setAccountQuery([&accounts](const QString& sql) { return accounts.query(sql); });
        QVERIFY(service.queryUserAccounts(QStringLiteral("select * from SYSTEM_USER_ACCOUNT"), found));
        QCOMPARE(found.size(), 2);
        QCOMPARE(found.at(0).name, QStringLiteral("anna"));
        QCOMPARE(found.at(1).number, 2);
        QSignalSpy problems(&service, &DataService::problemFound);
        QVERIFY(!service.queryUserAccounts(QStringLiteral("select * from SYSTEM_USER_PASSWORD"), found));
        QCOMPARE(problems.count(), 1);
        QCOMPARE(found.size(), 2);

        QVERIFY(!EUserAccount::allUserAccount().isOk());
        UserAccountDatabase::registerDatabase(&accounts);
        const auto all = EUserAccount::allUserAccount();
        QVERIFY(all.isOk());
        QCOMPARE(all.list.size(), 2);
        QVERIFY(all.list.at(0).isEqual(found.at(0)));
        accounts.close();
        QVERIFY(!EUserAccount::allUserAccount().isOk());
        UserAccountDatabase::registerDatabase(nullptr);
    }

    void areasThatCantBeReadAreNotAllAreas_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::newRow("nothing") << QString();
        QTest::newRow("half a list") << QStringLiteral("[\"a\"");
        QTest::newRow("no list") << QStringLiteral("{}");
        QTest::newRow("numbers") << QStringLiteral("[1]");
        QTest::newRow("a nameless area") << QStringLiteral("[\"\"]");
    }
    void areasThatCantBeReadAreNotAllAreas()
    {
        QFETCH(QString, stored);
        const AccountSettings place = m_places.file();
        AccountDatabase database;
        QVERIFY(database.open(place));
        QVERIFY(database.add(account(QStringLiteral("anna"), AccountRole::Operator, {QStringLiteral("a")}), password));
        runOnFile(place.fileName, QStringLiteral("UPDATE SYSTEM_USER_ACCOUNT SET AREAS = '%1'").arg(stored));
        const QString problem = place.fileName + QStringLiteral(": the areas of user \"anna\" can't be read");
        const auto found = database.find(QStringLiteral("anna"));
        QVERIFY(!found);
        QCOMPARE(found.error(), problem);
        QCOMPARE(database.allUserAccounts().error, problem);
        QVERIFY(database.allUserAccounts().list.isEmpty());
        EUserAccount mended = account({});
        mended.number = 1;
        QVERIFY(database.change(mended));
        QVERIFY(database.find(QStringLiteral("anna")).value());
    }

    void aFileIsItsOwnersAlone()
    {
        const AccountSettings place = m_places.file();
        AccountDatabase database;
        QVERIFY(database.open(place));
        QVERIFY(database.add(account(QStringLiteral("anna")), password));
        constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                                QFile::WriteOther | QFile::ExeOther;
        for (const char* suffix : {"", "-wal", "-shm"}) {
            const QString name = place.fileName + QString::fromLatin1(suffix);
            QVERIFY2(QFileInfo::exists(name), suffix);
            QVERIFY2(!(QFile::permissions(name) & others), suffix);
        }
        QCOMPARE(QDir(QFileInfo(place.fileName).path())
                     .entryList({QFileInfo(place.fileName).fileName() + QStringLiteral(".*")}),
                 QStringList()); // nothing is left of making it
    }

    void passwordsAreNotInTheFile()
    {
        const AccountSettings place = m_places.file();
        AccountDatabase database;
        QVERIFY(database.open(place));
        QVERIFY(database.add(account(QStringLiteral("anna")), password));
        for (const char* suffix : {"", "-wal"}) {
            QFile file(place.fileName + QString::fromLatin1(suffix));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY(!file.readAll().contains("sesame"));
        }
    }

    void aFileThatIsNoDatabaseIsToldOf()
    {
        AccountSettings place = m_places.file();
        QFile file(place.fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(5000, 'x'));
        file.close();
        AccountDatabase database;
        QCOMPARE(problemOf(database.open(place)), place.fileName + QStringLiteral(": file is not a database"));
        place.fileName = QStringLiteral("/nowhere/at/all.db");
        const auto opened = database.open(place);
        QVERIFY(!opened);
        QVERIFY2(opened.error().startsWith(QStringLiteral("/nowhere/at/all.db: ")), qPrintable(opened.error()));
    }

    void aDatabaseThatComesLaterIsUsed()
    {
        TemporaryFiles files;
        AccountSettings place;
        place.fileName = files.path(QStringLiteral("later/accounts.db"));
        AccountDatabase database;
        QVERIFY(!database.open(place));
        QVERIFY(!database.allUserAccounts().isOk());
        QVERIFY(QDir().mkpath(files.path(QStringLiteral("later"))));
        QVERIFY(database.add(account(QStringLiteral("anna")), password));
        QCOMPARE(namesOf(database), QStringList({QStringLiteral("anna")}));
    }

    void aClosedDatabaseSaysSo()
    {
        AccountDatabase database;
        const QString problem = QStringLiteral("No database of user accounts is open.");
        QVERIFY(!database.isOpen());
        QCOMPARE(database.allUserAccounts().error, problem);
        QCOMPARE(problemOf(database, account(QStringLiteral("anna"))), problem);
        QVERIFY(database.open(m_places.file()));
        QVERIFY(database.isOpen());
        database.close();
        QVERIFY(!database.isOpen());
        QCOMPARE(database.secret(QStringLiteral("anna")).error(), problem);
    }

    void whileAnotherWritesNothingIsLost()
    {
        const AccountSettings place = m_places.file();
        AccountDatabase database;
        QVERIFY(database.open(place));
        QVERIFY(database.add(account(QStringLiteral("anna")), password));
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("holder"));
            other.setDatabaseName(place.fileName);
            QVERIFY(other.open());
            QSqlQuery query(other);
            QVERIFY(query.exec(QStringLiteral("BEGIN IMMEDIATE")));
            QCOMPARE(problemOf(database, account(QStringLiteral("bob"))),
                     place.fileName + QStringLiteral(": database is locked"));
            QCOMPARE(namesOf(database), QStringList({QStringLiteral("anna")})); // reading goes on
            QVERIFY(query.exec(QStringLiteral("ROLLBACK")));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("holder"));
        QCOMPARE(database.add(account(QStringLiteral("bob")), password).value(), 2);
    }

    void whatWasAddedOutlivesAKill()
    {
        const AccountSettings place = m_places.file();
        int last = 0;
        for (const int additions : {1, 5, 2}) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--add-accounts"), place.fileName});
            QVERIFY(child.waitForStarted());
            int told = 0;
            const auto readLines = [&] {
                while (child.canReadLine())
                    told = child.readLine().trimmed().toInt();
            };
            while (told < last + additions) {
                QVERIFY2(child.canReadLine() || child.waitForReadyRead(), "the child ended by itself");
                readLines();
            }
            child.kill();
            QVERIFY(child.waitForFinished());
            readLines();
            QCOMPARE(child.exitStatus(), QProcess::CrashExit);

            AccountDatabase database;
            QCOMPARE(problemOf(database.open(place)), QString());
            const auto all = database.allUserAccounts();
            QVERIFY2(all.isOk(), qPrintable(all.error));
            last = all.list.size();
            QVERIFY2(last == told || last == told + 1, qPrintable(QString::number(last)));
            for (int number = 1; number <= last; ++number) {
                const QString name = QStringLiteral("user%1").arg(number);
                QCOMPARE(all.list.at(number - 1).number, number);
                QCOMPARE(all.list.at(number - 1).name, name);
                QVERIFY(database.secret(name).value().isKnown); // never an account without its password
            }
        }
    }
};

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == QLatin1String("--add-accounts"))
        return addAccounts(arguments.at(2));
    tst_AccountDatabase test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_accountdatabase.moc"
