#include "host/accounts/accountrole.h"

#include <QtTest>

class tst_AccountRole : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreThoseThatAreStored_data()
    {
        QTest::addColumn<int>("role");
        QTest::addColumn<QString>("name");
        QTest::newRow("viewer") << 0 << QStringLiteral("viewer");
        QTest::newRow("operator") << 1 << QStringLiteral("operator");
        QTest::newRow("supervisor") << 2 << QStringLiteral("supervisor");
        QTest::newRow("engineer") << 3 << QStringLiteral("engineer");
        QTest::newRow("administrator") << 4 << QStringLiteral("administrator");
    }
    void namesAreThoseThatAreStored()
    {
        QFETCH(int, role);
        QFETCH(QString, name);
        QCOMPARE(accountRoleName(AccountRole(role)), name);
        QVERIFY(accountRoleOf(name) == AccountRole(role));
    }

    void otherNamesAreNone()
    {
        for (const char* name : {"", "Viewer", "OPERATOR", "operator ", "admin", "5"})
            QVERIFY2(!accountRoleOf(QString::fromLatin1(name)), name);
    }

    void eachRoleIsAboveThoseBefore()
    {
        QVERIFY(AccountRole::Viewer < AccountRole::Operator);
        QVERIFY(AccountRole::Operator < AccountRole::Supervisor);
        QVERIFY(AccountRole::Supervisor < AccountRole::Engineer);
        QVERIFY(AccountRole::Engineer < AccountRole::Administrator);
    }
};

QTEST_GUILESS_MAIN(tst_AccountRole)
#include "tst_accountrole.moc"
