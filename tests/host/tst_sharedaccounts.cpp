#include "host/accounts/accountdatabase.h"
#include "host/accounts/databasemanager.h"
#include "tests/support/accountplaces.h"

#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <cstdio>

namespace {

const QString password = QStringLiteral("open sesame");

EUserAccount account(const QString& name, AccountRole role = AccountRole::Operator)
{
    EUserAccount made;
    made.name = name;
    made.role = accountRoleName(role);
    return made;
}

QString problemOf(const tl::expected<void, QString>& result)
{
    return result ? QString() : result.error();
}

QString placeOf(const AccountSettings& settings)
{
    return QStringLiteral("%1 at 127.0.0.1:%2: ").arg(settings.database).arg(settings.port);
}

/// What the program does as a child: a workplace that adds accounts without an end, each under another name. Tells "NUMBER
/// NAME" of each that was added and "- NAME REASON" of each that was not.
int addAccounts(const QStringList& arguments)
{
    AccountSettings settings;
    settings.driver = AccountSettings::Driver::PostgreSql;
    settings.host = QStringLiteral("127.0.0.1");
    settings.port = arguments.at(0).toInt();
    settings.database = arguments.at(1);
    settings.user = PostgresCluster::user();
    settings.passwordFile = arguments.at(2);
    AccountDatabase database;
    const auto opened = database.open(settings);
    for (int count = 1; opened; ++count) {
        const QString name = arguments.at(3) + QString::number(count);
        const auto number = database.add(account(name), password);
        if (number)
            std::printf("%d %s\n", *number, qPrintable(name));
        else
            std::printf("- %s %s\n", qPrintable(name), qPrintable(number.error().simplified()));
        std::fflush(stdout);
    }
    std::fprintf(stderr, "%s\n", qPrintable(opened.error()));
    return 1;
}

/// A workplace in a process of its own, and what it told.
class Workplace
{
public:
    Workplace(const AccountSettings& place, const QString& prefix)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(),
                        {QStringLiteral("--add-accounts"), QString::number(place.port), place.database,
                         place.passwordFile, prefix});
        QObject::connect(&m_process, &QProcess::readyRead, [this] { read(); });
    }
    ~Workplace() { end(); }
    Q_DISABLE_COPY(Workplace)

    void end()
    {
        m_process.kill();
        m_process.waitForFinished();
        read();
    }
    bool isRunning() const { return m_process.state() == QProcess::Running; }

    QMap<QString, int> added; ///< numbers by name
    QStringList refused;      ///< names
    QStringList reasons;

private:
    void read()
    {
        while (m_process.canReadLine()) {
            const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
            const QString name = line.section(QLatin1Char(' '), 1, 1);
            if (line.startsWith(QLatin1Char('-'))) {
                refused.append(name);
                reasons.append(line.section(QLatin1Char(' '), 2));
            } else {
                added.insert(name, line.section(QLatin1Char(' '), 0, 0).toInt());
            }
        }
    }

    QProcess m_process;
};

} // namespace

class tst_SharedAccounts : public QObject
{
    Q_OBJECT

private:
    AccountPlaces m_places;

private Q_SLOTS:
    void initTestCase()
    {
        if (!PostgresCluster::isInstalled())
            QSKIP("PostgreSQL's server is not installed");
    }

    void aStoppedServerComesBack()
    {
        const AccountSettings place = m_places.database();
        AccountDatabase database;
        QCOMPARE(problemOf(database.open(place)), QString());
        QVERIFY(database.add(account(QStringLiteral("anna")), password));
        QVERIFY(m_places.server().stop());
        for (int time = 0; time < 2; ++time) {
            const auto number = database.add(account(QStringLiteral("bob")), password);
            QVERIFY(!number);
            QVERIFY2(number.error().startsWith(placeOf(place)), qPrintable(number.error()));
            QVERIFY2(number.error().contains(QStringLiteral("Connection refused")), qPrintable(number.error()));
            QVERIFY(!database.allUserAccounts().isOk());
        }
        QVERIFY(m_places.server().start());
        QCOMPARE(database.allUserAccounts().list.size(), 1);
        QCOMPARE(database.add(account(QStringLiteral("bob")), password).value(), 2);
    }

    void aServerThatWasRestartedIsNotNoticed()
    {
        AccountDatabase database;
        QVERIFY(database.open(m_places.database()));
        QVERIFY(m_places.server().stop());
        QVERIFY(m_places.server().start());
        QCOMPARE(database.add(account(QStringLiteral("anna")), password).value(), 1);
    }

    void aServerThatStartsLaterIsUsed()
    {
        const AccountSettings place = m_places.database();
        QVERIFY(m_places.server().stop());
        AccountDatabase database;
        const auto opened = database.open(place);
        QVERIFY(!opened);
        QVERIFY2(opened.error().startsWith(placeOf(place)), qPrintable(opened.error()));
        QVERIFY(m_places.server().start());
        QCOMPARE(database.add(account(QStringLiteral("anna")), password).value(), 1);
    }

    void aServerThatIsKilledUnderLoadLosesNothing()
    {
        const AccountSettings place = m_places.database();
        Workplace one(place, QStringLiteral("one")); // both find no tables
        Workplace other(place, QStringLiteral("other"));
        for (int round = 1; round <= 3; ++round) {
            const auto added = one.added.size();
            const auto addedOther = other.added.size();
            QTRY_VERIFY_WITH_TIMEOUT(one.added.size() > added && other.added.size() > addedOther, 60000);
            const auto refused = one.refused.size();
            const auto refusedOther = other.refused.size();
            QVERIFY(m_places.server().kill());
            QTRY_VERIFY_WITH_TIMEOUT(one.refused.size() > refused && other.refused.size() > refusedOther, 60000);
            bool isStarted = false; // which works once the killed one's children are gone
            QTRY_VERIFY_WITH_TIMEOUT(isStarted || (isStarted = m_places.server().start()), 60000);
        }
        const auto added = one.added.size();
        const auto addedOther = other.added.size();
        QTRY_VERIFY_WITH_TIMEOUT(one.added.size() > added && other.added.size() > addedOther, 60000);
        QVERIFY(one.isRunning() && other.isRunning()); // the same processes all the time
        one.end();
        other.end();

        AccountDatabase database;
        QCOMPARE(problemOf(database.open(place)), QString());
        const auto all = database.allUserAccounts();
        QVERIFY2(all.isOk(), qPrintable(all.error));
        QMap<QString, int> found;
        QSet<int> numbers;
        for (const EUserAccount& each : all.list) {
            found.insert(each.name, each.number);
            numbers.insert(each.number);
            QVERIFY(database.secret(each.name).value().isKnown);
        }
        QCOMPARE(numbers.size(), all.list.size());
        for (const Workplace* workplace : {&one, &other}) {
            for (auto each = workplace->added.begin(); each != workplace->added.end(); ++each) {
                QCOMPARE(found.value(each.key()), each.value());
                found.remove(each.key());
            }
            // Of the rest at most one is what the workplace was about when it was ended; others were told as failures.
            for (const QString& name : workplace->refused)
                found.remove(name);
            for (const QString& reason : workplace->reasons) {
                QVERIFY2(reason.startsWith(placeOf(place)), qPrintable(reason));
                QVERIFY2(!reason.contains(QStringLiteral("duplicate key")),
                         qPrintable(reason)); // each number is given once
            }
        }
        QVERIFY(found.size() <= 2);
    }

    void twoWorkplacesDontTakeOutTheLastAdministrators()
    {
        const AccountSettings place = m_places.database();
        AccountDatabase one;
        AccountDatabase other;
        QVERIFY(one.open(place));
        QVERIFY(other.open(place));
        QVERIFY(one.add(account(QStringLiteral("anna"), AccountRole::Administrator), password));
        QVERIFY(one.add(account(QStringLiteral("bob"), AccountRole::Administrator), password));
        QVERIFY(one.remove(QStringLiteral("anna")));
        QCOMPARE(problemOf(other.setLocked(QStringLiteral("bob"), true)),
                 QStringLiteral("This is the last administrator who can log on."));
    }

    void aLockOfAnotherWorkplaceIsNotWaitedForLong()
    {
        const AccountSettings place = m_places.database();
        AccountDatabase database;
        QVERIFY(database.open(place));
        QVERIFY(database.add(account(QStringLiteral("bob")), password));
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("holder"));
            other.setHostName(place.host);
            other.setPort(place.port);
            other.setDatabaseName(place.database);
            QVERIFY(other.open(place.user, PostgresCluster::password()));
            QSqlQuery query(other);
            QVERIFY(query.exec(QStringLiteral("BEGIN")));
            QVERIFY(query.exec(QStringLiteral("UPDATE SYSTEM_USER_NUMBER SET LAST_NUMBER = 50")));
            // Qt's driver says this of the statement that was cancelled.
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Unable to free statement")));
            const auto number = database.add(account(QStringLiteral("anna")), password);
            QVERIFY(!number);
            QVERIFY2(number.error().contains(QStringLiteral("statement timeout")), qPrintable(number.error()));
            QVERIFY(database.allUserAccounts().isOk()); // reading goes on
            // A change that needs no number waits as well: the other one might be taking the last administrator.
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Unable to free statement")));
            const QString problem = problemOf(database.setLocked(QStringLiteral("bob"), true));
            QVERIFY2(problem.contains(QStringLiteral("statement timeout")), qPrintable(problem));
            QVERIFY(query.exec(QStringLiteral("COMMIT")));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("holder"));
        QCOMPARE(database.add(account(QStringLiteral("anna")), password).value(), 51);
    }

    void aServerThatSaysNothingIsNotWaitedForLong()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        AccountSettings place = m_places.database();
        place.port = silent.serverPort();
        AccountDatabase database;
        const auto opened = database.open(place);
        QVERIFY(!opened);
        QVERIFY2(opened.error().contains(QStringLiteral("timeout expired")), qPrintable(opened.error()));
    }

    void whatIsWrongWithTheConnectionIsSaid_data()
    {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("passwordFile");
        QTest::addColumn<QString>("reason");
        const AccountSettings good = m_places.database();
        TemporaryFiles files;
        QTest::newRow("a database that there is not") << QStringLiteral("nowhere's") << good.user << good.passwordFile
                                                      << QStringLiteral("\"nowhere's\" does not exist");
        QTest::newRow("a user who may not") << good.database << QStringLiteral("stranger") << good.passwordFile
                                            << QStringLiteral("password authentication failed");
        QTest::newRow("no password") << good.database << good.user << QString()
                                     << QStringLiteral("no password supplied");
        QTest::newRow("no password file") << good.database << good.user << QStringLiteral("/nowhere/password")
                                          << QStringLiteral("the password file /nowhere/password can't be read");
        QTest::newRow("a folder for a password file")
            << good.database << good.user << QStringLiteral("/") << QStringLiteral("the password file / can't be read");
    }
    void whatIsWrongWithTheConnectionIsSaid()
    {
        QFETCH(QString, database);
        QFETCH(QString, user);
        QFETCH(QString, passwordFile);
        QFETCH(QString, reason);
        AccountSettings place = m_places.database();
        place.database = database;
        place.user = user;
        place.passwordFile = passwordFile;
        AccountDatabase accounts;
        const auto opened = accounts.open(place);
        QVERIFY(!opened);
        QVERIFY2(opened.error().startsWith(placeOf(place)), qPrintable(opened.error()));
        QVERIFY2(opened.error().contains(reason), qPrintable(opened.error()));
        QVERIFY(!opened.error().contains(PostgresCluster::password()));
    }

    void aWorkplaceNeedsNoRightToMakeTables()
    {
        AccountSettings place = m_places.database();
        {
            AccountDatabase owner;
            QVERIFY(owner.open(place));
            QVERIFY(owner.add(account(QStringLiteral("anna")), password));
        }
        m_places.server().sql(
            place.database,
            QStringLiteral("CREATE ROLE workplace LOGIN PASSWORD '1';"
                           "GRANT SELECT, INSERT, UPDATE, DELETE ON ALL TABLES IN SCHEMA public TO workplace"));
        const TemporaryFiles files;
        place.user = QStringLiteral("workplace");
        place.passwordFile = files.write(QStringLiteral("password"), "1\r\nnot this line\n");
        AccountDatabase database;
        QCOMPARE(problemOf(database.open(place)), QString());
        QCOMPARE(database.add(account(QStringLiteral("bob")), password).value(), 2);
    }

    void aServersFailureIsNotTheUsers()
    {
        AccountDatabase database;
        const AccountSettings place = m_places.database();
        QVERIFY(database.open(place));
        const QString anna = QStringLiteral("anna");
        QVERIFY(database.add(account(anna), password));
        DatabaseManager manager(database);
        QVERIFY(manager.logOn(anna, password));
        QVERIFY(m_places.server().stop());
        for (int time = 0; time < 4; ++time) {
            QString message;
            QVERIFY(!manager.checkUserPassword(anna, password, message));
            QVERIFY2(message.startsWith(placeOf(place)), qPrintable(message));
        }
        QCOMPARE(manager.currentUserId(), anna);
        QVERIFY(manager.may(AccountRole::Operator, {}));
        QVERIFY(m_places.server().start());
        QVERIFY(manager.checkCurrentUserPassword(password));
    }
};

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 6 && arguments.at(1) == QLatin1String("--add-accounts"))
        return addAccounts(arguments.mid(2));
    tst_SharedAccounts test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_sharedaccounts.moc"
