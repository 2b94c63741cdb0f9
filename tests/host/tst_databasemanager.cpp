#include "host/accounts/accountdatabase.h"
#include "host/accounts/databasemanager.h"
#include "host/accounts/passwordhash_p.h"
#include "tests/support/accountplaces.h"

#include <QSignalSpy>
#include <QtTest>

namespace QTest {
template <>
inline char* toString(const std::chrono::milliseconds& duration)
{
    return qstrdup(qPrintable(QString::number(duration.count())));
}
} // namespace QTest

namespace {

using namespace std::chrono_literals;
using Driver = AccountSettings::Driver;

const QString anna = QStringLiteral("anna");
const QString bob = QStringLiteral("bob");
const QString nobody = QStringLiteral("nobody");
const QString good = QStringLiteral("open sesame");
const QString wrong = QStringLiteral("open simsim");
const QString wrongText = QStringLiteral("The user name or the password is wrong.");

EUserAccount account(const QString& name, AccountRole role, const QStringList& areas = {})
{
    EUserAccount made;
    made.name = name;
    made.role = accountRoleName(role);
    made.areas = areas;
    return made;
}

/// A manager over a database with anna, an administrator, and bob, an operator of the north. Its clock is moved by hand, and
/// the hashes it computes are counted.
struct TestAccounts
{
    explicit TestAccounts(const AccountSettings& place)
    {
        const bool isOpen = database.open(place) && database.add(account(anna, AccountRole::Administrator), good) &&
                            database.add(account(bob, AccountRole::Operator, {QStringLiteral("north")}), good);
        if (!isOpen)
            qFatal("no accounts");
    }

    QString textOf(const QString& user, const QString& password)
    {
        QString message;
        const bool isRight = manager.checkUserPassword(user, password, message);
        return isRight ? QStringLiteral("right") : message;
    }
    void fail(const QString& user, int times)
    {
        for (int time = 0; time < times; ++time) {
            now += manager.refusal(user).count();
            if (textOf(user, wrong) != wrongText)
                qFatal("a wrong password was not found wrong");
        }
    }

    /// Has every event, to the end of the manager's life, told as "KIND ACCOUNT NUMBER by USER OUTCOME: TEXT".
    void tellTo(QStringList& told)
    {
        const auto record = [&told](const AccountEvent& event) -> tl::expected<void, QString> {
            told.append(
                QStringLiteral("%1 %2 %3 by %4 %5: %6")
                    .arg(AccountEvent::nameOf(event.kind), event.account)
                    .arg(event.number)
                    .arg(event.user, event.isDone ? QStringLiteral("done") : QStringLiteral("refused"), event.text));
            return {};
        };
        manager.setRecorder(record);
        database.setRecorder(record);
    }

    AccountDatabase database;
    qint64 now = 1000000;
    int hashes = 0;
    DatabaseManager manager{database, [this] { return now; },
                            [this](const QByteArray& hash, const QString& password) {
                                ++hashes;
                                const auto known = m_results.constFind({hash, password});
                                if (known != m_results.constEnd())
                                    return tl::expected<bool, QString>(*known);
                                const auto result = PasswordHash::verify(hash, password);
                                m_results.insert({hash, password}, result.value());
                                return result;
                            }};

private:
    QMap<QPair<QByteArray, QString>, bool> m_results; ///< the same one need not be computed again
};

} // namespace

class tst_DatabaseManager : public QObject
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
    void aUserLogsOnAndOff_data() { addDatabases(); }
    void aUserLogsOnAndOff()
    {
        TestAccounts test(newPlace());
        QSignalSpy on(&test.manager, &DatabaseManager::loggedOn);
        QSignalSpy off(&test.manager, &DatabaseManager::loggedOff);
        QCOMPARE(test.manager.currentUserId(), QString());
        QVERIFY(!test.manager.currentAccount());
        QCOMPARE(test.manager.logOn(anna, wrong).error(), wrongText);
        QCOMPARE(test.manager.currentUserId(), QString());
        QVERIFY(test.manager.logOn(anna, good));
        QCOMPARE(test.manager.currentUserId(), anna);
        QCOMPARE(test.manager.currentAccount()->number, 1);
        QCOMPARE(test.manager.logOn(bob, wrong).error(), wrongText);
        QCOMPARE(test.manager.currentUserId(), anna); // stays
        QVERIFY(test.manager.logOn(bob, good));
        QCOMPARE(test.manager.currentUserId(), bob);
        QCOMPARE(off.count(), 1);
        QCOMPARE(off.at(0).at(0).toString(), anna);
        test.manager.logOff();
        test.manager.logOff();
        QCOMPARE(test.manager.currentUserId(), QString());
        QCOMPARE(off.count(), 2);
        QCOMPARE(on.count(), 2);
        QCOMPARE(on.at(1).at(0).toString(), bob);
    }

    void passwordsAreChecked_data() { addDatabases(); }
    void passwordsAreChecked()
    {
        TestAccounts test(newPlace());
        QVERIFY(!test.manager.checkCurrentUserPassword(good)); // nobody is logged on
        QCOMPARE(test.textOf(anna, good), QStringLiteral("right"));
        QCOMPARE(test.textOf(anna, wrong), wrongText);
        QCOMPARE(test.textOf(anna, QString()), wrongText);
        QCOMPARE(test.textOf(nobody, good), wrongText);
        QCOMPARE(test.textOf(QString(), QString()), wrongText);
        QVERIFY(test.manager.logOn(bob, good));
        QVERIFY(test.manager.checkCurrentUserPassword(good));
        QVERIFY(!test.manager.checkCurrentUserPassword(wrong));
        QVERIFY(!test.manager.checkCurrentUserPassword(QString()));
    }

    void withoutSecurityEverythingIsRight()
    {
        TestAccounts test(m_places.file());
        QVERIFY(test.manager.logOn(anna, good));
        QSignalSpy off(&test.manager, &DatabaseManager::loggedOff);
        test.manager.setSecured(false);
        QCOMPARE(off.count(), 1); // nobody is logged on while it is off
        QCOMPARE(test.manager.currentUserId(), QString());
        test.hashes = 0;
        for (int time = 0; time < 20; ++time) {
            QVERIFY(test.manager.checkCurrentUserPassword(wrong));
            QCOMPARE(test.textOf(anna, wrong), QStringLiteral("right"));
            QCOMPARE(test.textOf(nobody, QString()), QStringLiteral("right"));
        }
        QCOMPARE(test.hashes, 0);
        QCOMPARE(test.manager.proofOf(anna), quint64(1)); // of before
        QVERIFY(!test.manager.logOn(anna, good));
        QVERIFY(test.manager.may(AccountRole::Administrator, QStringLiteral("anywhere")));
        test.manager.setSecured(true);
        QCOMPARE(test.manager.refusal(anna), 0ms); // no failure was counted
        QCOMPARE(test.textOf(anna, good), QStringLiteral("right"));
        QVERIFY(!test.manager.may(AccountRole::Viewer, {}));
    }

    void failuresAreRefusedForLongerAndLonger_data()
    {
        QTest::addColumn<QString>("user");
        QTest::newRow("of a user") << anna;
        QTest::newRow("of a name that nobody has") << nobody;
        QTest::newRow("of a name that nobody can have") << QString(10000000, QLatin1Char('a'));
        QTest::newRow("of NUL") << QString(1, QChar(0));
    }
    void failuresAreRefusedForLongerAndLonger()
    {
        QFETCH(QString, user);
        TestAccounts test(m_places.file());
        const std::chrono::seconds refusals[] = {0s, 0s, 2s, 4s, 8s, 16s, 32s, 64s, 128s, 256s, 300s, 300s};
        for (const std::chrono::milliseconds expected : refusals) {
            QCOMPARE(test.textOf(user, wrong), wrongText);
            QCOMPARE(test.manager.refusal(user), expected);
            if (expected == 0ms)
                continue;
            const int before = test.hashes;
            test.now += expected.count() - 1;
            QCOMPARE(test.textOf(user, wrong), QStringLiteral("Too many wrong passwords: try again in 1 s."));
            QCOMPARE(test.textOf(user, good), QStringLiteral("Too many wrong passwords: try again in 1 s."));
            QCOMPARE(test.hashes, before);
            QCOMPARE(test.manager.refusal(user), 1ms); // a refused attempt does not make it longer
            test.now += 1;
        }
        QCOMPARE(test.hashes, 12);
    }

    void aRefusalSaysForHowLong()
    {
        TestAccounts test(m_places.file());
        test.fail(anna, 4);
        QCOMPARE(test.textOf(anna, good), QStringLiteral("Too many wrong passwords: try again in 4 s."));
        test.now += 1;
        QCOMPARE(test.textOf(anna, good), QStringLiteral("Too many wrong passwords: try again in 4 s."));
        test.now += 999;
        QCOMPARE(test.textOf(anna, good), QStringLiteral("Too many wrong passwords: try again in 3 s."));
        QCOMPARE(test.textOf(bob, good), QStringLiteral("right")); // is another name
        test.now += 3000;
        QCOMPARE(test.textOf(anna, good), QStringLiteral("right"));
    }

    void aSuccessForgetsFailures()
    {
        TestAccounts test(m_places.file());
        for (int round = 0; round < 3; ++round) {
            test.fail(anna, 2);
            QCOMPARE(test.textOf(anna, good), QStringLiteral("right"));
        }
        test.fail(anna, 5);
        test.now += 8000;
        QCOMPARE(test.textOf(anna, good), QStringLiteral("right"));
        test.fail(anna, 2);
        QCOMPARE(test.manager.refusal(anna), 0ms);
    }

    void manyFailuresDontOverflow()
    {
        TestAccounts test(m_places.file());
        int tried = 0;
        DatabaseManager manager(
            test.database, [&test] { return test.now; },
            [&tried](const QByteArray&, const QString&) {
                ++tried;
                return false;
            });
        for (int time = 0; time < 200; ++time) {
            test.now += manager.refusal(anna).count();
            QVERIFY(!manager.logOn(anna, wrong));
        }
        QCOMPARE(tried, 200);
        QCOMPARE(manager.refusal(anna), 300000ms);
    }

    void everyWayCountsToTheSameName()
    {
        TestAccounts test(m_places.file());
        QVERIFY(test.manager.logOn(anna, good));
        QVERIFY(!test.manager.checkCurrentUserPassword(wrong));
        QCOMPARE(test.textOf(anna, wrong), wrongText);
        QVERIFY(!test.manager.changePassword(wrong, QStringLiteral("long enough")));
        QCOMPARE(test.manager.refusal(anna), 2000ms);
        QVERIFY(!test.manager.checkCurrentUserPassword(good));
        QVERIFY(!test.manager.logOn(anna, good));
        QCOMPARE(test.manager.currentUserId(), anna);
    }

    void anUnknownNameCostsWhatAWrongPasswordDoes_data() { addDatabases(); }
    void anUnknownNameCostsWhatAWrongPasswordDoes()
    {
        TestAccounts test(newPlace());
        QVERIFY(test.database.setLocked(bob, true));
        for (const QString& user : {anna, bob, nobody, QString(), QString(10000000, QLatin1Char('a'))}) {
            test.hashes = 0;
            for (int time = 0; time < 3; ++time)
                QCOMPARE(test.textOf(user, wrong), wrongText);
            QCOMPARE(test.hashes, 3);
            QVERIFY(test.textOf(user, wrong) != wrongText);
            QCOMPARE(test.hashes, 3);
        }
    }

    void theHashOfNobodyIsNeverRight()
    {
        TestAccounts test(m_places.file());
        DatabaseManager manager(test.database, {}, [](const QByteArray&, const QString&) { return true; });
        QString message;
        QVERIFY(!manager.checkUserPassword(nobody, good, message));
        QCOMPARE(message, wrongText);
        QCOMPARE(manager.proofOf(nobody), quint64(0));
        QVERIFY(manager.logOn(anna, wrong)); // what this verifier calls right
    }

    void failuresOfTooManyNamesForgetTheOldest()
    {
        TestAccounts test(m_places.file());
        DatabaseManager manager(
            test.database, [&test] { return test.now; }, [](const QByteArray&, const QString&) { return false; });
        const auto nameOf = [](int number) { return QString(1, QChar(1)) + QString::number(number); }; // not asked for
        const auto refuse = [&](const QString& name) {
            while (manager.refusal(name) == 0ms && !manager.logOn(name, wrong))
                ++test.now;
        };
        for (int number = 0; number < DatabaseManager::mostNames; ++number) {
            QVERIFY(!manager.logOn(nameOf(number), wrong));
            ++test.now;
        }
        refuse(nameOf(0)); // is the newest now
        refuse(nameOf(DatabaseManager::mostNames));
        QVERIFY(manager.refusal(nameOf(0)) > 0ms);
        QVERIFY(manager.refusal(nameOf(DatabaseManager::mostNames)) > 0ms);
        // The first name was the oldest but one that failed again: the second went. Its failures begin anew.
        for (int time = 0; time < DatabaseManager::freeFailures; ++time)
            QVERIFY(!manager.logOn(nameOf(1), wrong));
        QCOMPARE(manager.refusal(nameOf(1)), 0ms);
        for (int time = 0; time < DatabaseManager::freeFailures; ++time)
            QVERIFY(!manager.logOn(nameOf(5000), wrong)); // had one before
        QVERIFY(manager.refusal(nameOf(5000)) > 0ms);
    }

    void aLockedUserLearnsItByHisPasswordOnly_data() { addDatabases(); }
    void aLockedUserLearnsItByHisPasswordOnly()
    {
        TestAccounts test(newPlace());
        QVERIFY(test.database.setLocked(bob, true));
        QCOMPARE(test.textOf(bob, wrong), wrongText);
        QCOMPARE(test.textOf(bob, good), QStringLiteral("This user is locked."));
        QCOMPARE(test.manager.logOn(bob, good).error(), QStringLiteral("This user is locked."));
        QCOMPARE(test.manager.proofOf(bob), quint64(0));
        QCOMPARE(test.manager.currentUserId(), QString());
        QVERIFY(test.database.setLocked(bob, false));
        QVERIFY(test.manager.logOn(bob, good));
    }

    void aUserWhoIsLockedOrRemovedIsLoggedOffByACheck_data()
    {
        QTest::addColumn<QString>("how");
        for (const char* how : {"locked", "removed", "replaced"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }
    void aUserWhoIsLockedOrRemovedIsLoggedOffByACheck()
    {
        QFETCH(QString, how);
        TestAccounts test(m_places.file());
        QVERIFY(test.manager.logOn(bob, good));
        QSignalSpy off(&test.manager, &DatabaseManager::loggedOff);
        if (how == QLatin1String("locked")) {
            QVERIFY(test.database.setLocked(bob, true));
        } else {
            QVERIFY(test.database.remove(bob));
            if (how == QLatin1String("replaced"))
                QVERIFY(test.database.add(account(bob, AccountRole::Administrator), good));
        }
        QCOMPARE(test.textOf(anna, good), QStringLiteral("right")); // is about someone else
        QCOMPARE(test.manager.currentUserId(), bob);
        QVERIFY(!test.manager.checkCurrentUserPassword(good));
        QCOMPARE(test.manager.currentUserId(), QString());
        QVERIFY(!test.manager.may(AccountRole::Viewer, {}));
        QCOMPARE(off.count(), 1);
        QVERIFY(!test.manager.changePassword(good, QStringLiteral("long enough")));
    }

    void rightsChangeWithACheck_data() { addDatabases(); }
    void rightsChangeWithACheck()
    {
        TestAccounts test(newPlace());
        QVERIFY(test.manager.logOn(bob, good));
        QVERIFY(!test.manager.may(AccountRole::Engineer, {}));
        EUserAccount changed = account(bob, AccountRole::Engineer);
        changed.number = 2;
        QVERIFY(test.database.change(changed));
        QVERIFY(!test.manager.may(AccountRole::Engineer, {})); // asks nobody
        QVERIFY(test.manager.checkCurrentUserPassword(good));
        QVERIFY(test.manager.may(AccountRole::Engineer, {}));
        QCOMPARE(test.manager.account(bob)->role, QStringLiteral("engineer"));
        QVERIFY(!test.manager.account(nobody));
    }

    void aPasswordIsChangedByWhoKnowsIt_data() { addDatabases(); }
    void aPasswordIsChangedByWhoKnowsIt()
    {
        TestAccounts test(newPlace());
        const QString next = QStringLiteral("close sesame");
        QCOMPARE(test.manager.changePassword(good, next).error(), QStringLiteral("Nobody is logged on."));
        QVERIFY(test.manager.logOn(bob, good));
        QCOMPARE(test.manager.changePassword(wrong, next).error(), wrongText);
        QCOMPARE(test.manager.changePassword(good, QStringLiteral("short")).error(),
                 QStringLiteral("A password needs 8 characters at least."));
        QVERIFY(test.manager.checkCurrentUserPassword(good));
        QVERIFY(test.manager.changePassword(good, next));
        QVERIFY(test.manager.checkCurrentUserPassword(next));
        QVERIFY(!test.manager.checkCurrentUserPassword(good));
        QCOMPARE(test.textOf(anna, good), QStringLiteral("right")); // hers stays
    }

    void onlyARightPasswordIsAProof()
    {
        TestAccounts test(m_places.file());
        QCOMPARE(test.manager.proofOf(anna), quint64(0));
        QCOMPARE(test.textOf(anna, wrong), wrongText);
        QCOMPARE(test.textOf(nobody, good), wrongText);
        QCOMPARE(test.manager.proofOf(anna) + test.manager.proofOf(nobody), quint64(0));
        QCOMPARE(test.textOf(anna, good), QStringLiteral("right"));
        QCOMPARE(test.manager.proofOf(anna), quint64(1));
        QVERIFY(test.manager.logOn(anna, good));
        QVERIFY(test.manager.checkCurrentUserPassword(good));
        QCOMPARE(test.manager.proofOf(anna), quint64(3));
        QCOMPARE(test.manager.proofOf(bob), quint64(0));
    }

    void aDatabaseFailureIsNotTheUsers()
    {
        TestAccounts test(m_places.file());
        QVERIFY(test.manager.logOn(bob, good));
        const int before = test.hashes;
        test.database.close();
        for (int time = 0; time < 5; ++time)
            QCOMPARE(test.textOf(bob, wrong), QStringLiteral("No database of user accounts is open."));
        QVERIFY(!test.manager.checkCurrentUserPassword(good));
        QCOMPARE(test.manager.logOn(bob, good).error(), QStringLiteral("No database of user accounts is open."));
        QCOMPARE(test.manager.refusal(bob), 0ms);
        QCOMPARE(test.manager.currentUserId(), bob); // nothing says that his account is gone
        QCOMPARE(test.hashes, before);
    }

    void whatCantBeComparedIsNotTheUsers()
    {
        TestAccounts test(m_places.file());
        DatabaseManager manager(test.database, {}, [](const QByteArray&, const QString&) {
            return tl::expected<bool, QString>(tl::unexpect, QStringLiteral("no memory"));
        });
        for (int time = 0; time < 5; ++time)
            QCOMPARE(manager.logOn(anna, good).error(), QStringLiteral("no memory"));
        QCOMPARE(manager.refusal(anna), 0ms);
    }

    void rolesAndAreas_data()
    {
        QTest::addColumn<int>("own");
        QTest::addColumn<QStringList>("areas");
        QTest::addColumn<int>("needed");
        QTest::addColumn<QString>("area");
        QTest::addColumn<bool>("may");
        const QString north = QStringLiteral("north");
        const QString south = QStringLiteral("south");
        const auto row = [](const char* name, AccountRole own, const QStringList& areas, AccountRole needed,
                            const QString& area,
                            bool may) { QTest::newRow(name) << int(own) << areas << int(needed) << area << may; };
        row("the same role", AccountRole::Operator, {}, AccountRole::Operator, {}, true);
        row("a higher role", AccountRole::Administrator, {}, AccountRole::Viewer, {}, true);
        row("a lower role", AccountRole::Operator, {}, AccountRole::Supervisor, {}, false);
        row("all areas", AccountRole::Operator, {}, AccountRole::Operator, north, true);
        row("one of his areas", AccountRole::Operator, {south, north}, AccountRole::Operator, north, true);
        row("another area", AccountRole::Operator, {south}, AccountRole::Operator, north, false);
        row("no area", AccountRole::Operator, {south}, AccountRole::Operator, {}, true);
        row("an area in other letters", AccountRole::Operator, {north}, AccountRole::Operator, QStringLiteral("North"),
            false);
        row("his area and a lower role", AccountRole::Viewer, {north}, AccountRole::Operator, north, false);
        row("an administrator of one area", AccountRole::Administrator, {south}, AccountRole::Operator, north, false);
    }
    void rolesAndAreas()
    {
        QFETCH(int, own);
        QFETCH(QStringList, areas);
        QFETCH(int, needed);
        QFETCH(QString, area);
        QFETCH(bool, may);
        QCOMPARE(DatabaseManager::may(account(anna, AccountRole(own), areas), AccountRole(needed), area), may);
        EUserAccount without = account(anna, AccountRole(own), areas);
        without.role = QStringLiteral("king");
        QVERIFY(!DatabaseManager::may(without, AccountRole::Viewer, {}));
    }

    void theCurrentUsersRights()
    {
        TestAccounts test(m_places.file());
        QVERIFY(!test.manager.may(AccountRole::Viewer, {}));
        QVERIFY(test.manager.logOn(bob, good));
        QVERIFY(test.manager.may(AccountRole::Operator, QStringLiteral("north")));
        QVERIFY(!test.manager.may(AccountRole::Operator, QStringLiteral("south")));
        QVERIFY(!test.manager.may(AccountRole::Supervisor, {}));
        test.database.close();
        QVERIFY(test.manager.may(AccountRole::Operator, QStringLiteral("north"))); // asks no database
    }

    void sessionsAreAccountedFor()
    {
        QStringList told;
        {
            TestAccounts test(m_places.file());
            test.tellTo(told);
            QVERIFY(test.manager.logOn(anna, good));
            QVERIFY(test.manager.logOn(bob, good));
            test.manager.logOff();
            test.manager.logOff(); // nobody is there any more
            QVERIFY(test.manager.logOn(bob, good));
            QVERIFY(test.database.setLocked(bob, true));
            QVERIFY(test.manager.refresh());
            QVERIFY(test.manager.logOn(anna, good));
            test.manager.setSecured(false);
            test.manager.setSecured(true);
            QVERIFY(test.manager.logOn(anna, good));
            QVERIFY(test.manager.checkCurrentUserPassword(good)); // is no event
        }
        QCOMPARE(told.join(QLatin1Char('\n')),
                 QStringLiteral("logOn anna 1 by anna done: \n"
                                "logOff anna 1 by anna done: another log-on took its place\n"
                                "logOn bob 2 by bob done: \n"
                                "logOff bob 2 by bob done: \n"
                                "logOn bob 2 by bob done: \n"
                                "lockAccount bob 2 by  done: \n"
                                "logOff bob 2 by bob done: the account was removed or locked\n"
                                "logOn anna 1 by anna done: \n"
                                "logOff anna 1 by anna done: user security was turned off\n"
                                "logOn anna 1 by anna done: \n"
                                "logOff anna 1 by anna done: the program ended"));
    }

    void passwordsThatAreNotTakenAreAccountedFor()
    {
        QStringList told;
        TestAccounts test(m_places.file());
        QVERIFY(test.manager.logOn(anna, good));
        QVERIFY(test.database.setLocked(bob, true));
        test.tellTo(told);
        QVERIFY(!test.manager.logOn(nobody, good));
        QVERIFY(!test.manager.logOn(bob, good)); // is locked
        QVERIFY(!test.manager.checkCurrentUserPassword(wrong));
        QCOMPARE(test.textOf(bob, wrong), wrongText);
        QVERIFY(!test.manager.changePassword(QString(wrong), good));
        QVERIFY(test.manager.changePassword(good, QStringLiteral("another password"))); // told by the database
        QCOMPARE(told.join(QLatin1Char('\n')), QStringLiteral("logOn nobody 0 by nobody refused: %1\n"
                                                              "logOn bob 0 by bob refused: This user is locked.\n"
                                                              "checkPassword anna 0 by  refused: %1\n"
                                                              "checkPassword bob 0 by  refused: %1\n"
                                                              "checkPassword anna 0 by  refused: %1\n"
                                                              "setPassword anna 1 by  done: ")
                                                   .arg(wrongText));
        QVERIFY(!told.join(QString()).contains(good));
        QVERIFY(!told.join(QString()).contains(wrong));
    }

    void aNameThatIsTypedIsCut()
    {
        QStringList told;
        TestAccounts test(m_places.file());
        test.tellTo(told);
        QVERIFY(!test.manager.logOn(QString(1000000, QLatin1Char('a')), wrong));
        const QString cut(AccountDatabase::longestName + 1, QLatin1Char('a'));
        QCOMPARE(told, (QStringList{QStringLiteral("logOn %1 0 by %1 refused: %2").arg(cut, wrongText)}));
    }

    void attemptsThatAreRefusedAtOnceAreAccountedForOnce()
    {
        QStringList told;
        TestAccounts test(m_places.file());
        test.fail(anna, 3);
        test.tellTo(told);
        for (int time = 0; time < 50; ++time)
            QVERIFY(!test.manager.logOn(anna, good));
        QVERIFY(!test.manager.logOn(bob, wrong)); // another one
        QCOMPARE(told.join(QLatin1Char('\n')),
                 QStringLiteral("logOn anna 0 by anna refused: Too many wrong passwords: try again in 2 s.\n"
                                "logOn bob 0 by bob refused: %1")
                     .arg(wrongText));
        told.clear();
        test.fail(anna, 1); // after the span, and another one begins
        for (int time = 0; time < 50; ++time)
            QVERIFY(!test.manager.logOn(anna, good));
        QCOMPARE(told.join(QLatin1Char('\n')),
                 QStringLiteral("checkPassword anna 0 by  refused: %1\n"
                                "logOn anna 0 by anna refused: Too many wrong passwords: try again in 4 s.")
                     .arg(wrongText));
    }

    void whatCantBeAccountedForIsDoneAndTold()
    {
        TestAccounts test(m_places.file());
        QSignalSpy problems(&test.manager, &DatabaseManager::problemFound);
        test.manager.setRecorder(
            [](const AccountEvent&) { return tl::make_unexpected(QStringLiteral("the disk is full")); });
        QCOMPARE(test.manager.logOn(bob, wrong).error(), wrongText);
        QVERIFY(test.manager.logOn(bob, good));
        QCOMPARE(test.manager.currentUserId(), bob);
        test.manager.logOff();
        QCOMPARE(test.manager.currentUserId(), QString());
        QCOMPARE(problems.count(), 3);
        QCOMPARE(problems.at(0).at(0).toString(), QStringLiteral("the disk is full"));
    }

    void withoutSecurityNothingIsAccountedFor()
    {
        QStringList told;
        TestAccounts test(m_places.file());
        test.tellTo(told);
        test.manager.setSecured(false);
        QVERIFY(!test.manager.logOn(anna, good));
        QCOMPARE(test.textOf(anna, wrong), QStringLiteral("right"));
        QCOMPARE(told, QStringList());
    }

    void theClockUnlessGivenIsReal()
    {
        TestAccounts test(m_places.file());
        DatabaseManager manager(test.database, {}, [](const QByteArray&, const QString&) { return false; });
        for (int time = 0; time < 3; ++time)
            QVERIFY(!manager.logOn(anna, wrong));
        const auto first = manager.refusal(anna);
        QVERIFY(first > 0ms && first <= 2000ms);
        QTRY_VERIFY(manager.refusal(anna) < first);
        QTRY_COMPARE(manager.refusal(anna), 0ms);
        QCOMPARE(manager.logOn(anna, good).error(), wrongText);
    }
};

QTEST_GUILESS_MAIN(tst_DatabaseManager)
#include "tst_databasemanager.moc"
