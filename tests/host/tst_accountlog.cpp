#include "host/control/accountlog.h"

#include "host/core/machineuser.h"
#include "platform/data/scadaoperationmessage.h"
#include "tests/support/temporaryfiles.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

using Kind = AccountEvent::Kind;

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

AccountEvent eventOf(Kind kind, const char* account)
{
    AccountEvent made;
    made.kind = kind;
    made.account = text(account);
    return made;
}

QList<AuditLine> linesOf(const QString& fileName)
{
    AuditLog log;
    if (const auto opened = log.openReadOnly(fileName); !opened)
        qFatal("%s", qPrintable(opened.error()));
    return *log.newest(100);
}

} // namespace

class tst_AccountLog : public QObject
{
    Q_OBJECT

private:
    TemporaryFiles m_files;

private Q_SLOTS:
    void aLineSaysAllThereIsToSay()
    {
        const QString fileName = m_files.path(text("all.db"));
        AccountLog log(fileName, text("desk 1"));
        AccountEvent changed = eventOf(Kind::ChangeRights, "bob");
        changed.number = 2;
        changed.user = text("ann");
        changed.before = text("viewer, all areas");
        changed.after = text("operator, areas [\"North\"]");
        changed.text = text("why");
        const QDateTime before = QDateTime::currentDateTimeUtc();
        QVERIFY(log.record(changed));
        const QDateTime after = QDateTime::currentDateTimeUtc();
        const QList<AuditLine> lines = linesOf(fileName);
        QCOMPARE(lines.size(), 1);
        const AuditLine& line = lines.first();
        QCOMPARE(line.number, qint64(1));
        QVERIFY(line.time >= before && line.time <= after);
        QCOMPARE(line.workplace, text("desk 1"));
        QCOMPARE(line.user, text("ann"));
        QCOMPARE(line.operation, text("changeAccount"));
        QCOMPARE(line.subject, text("bob"));
        QCOMPARE(line.before, changed.before);
        QCOMPARE(line.value, changed.after);
        QCOMPARE(line.outcome, text("done"));
        QCOMPARE(line.text, text("why"));
        QCOMPARE(line.hash.size(), 64);
    }

    void everyKindHasItsWord()
    {
        const QString fileName = m_files.path(text("kinds.db"));
        AccountLog log(fileName, text("desk 1"));
        for (const Kind kind : {Kind::LogOn, Kind::LogOff, Kind::CheckPassword, Kind::Add, Kind::ChangeRights,
                                Kind::SetPassword, Kind::Lock, Kind::Unlock, Kind::Remove}) {
            AccountEvent each = eventOf(kind, "bob");
            each.isDone = false;
            QVERIFY(log.record(each));
        }
        QStringList words;
        for (const AuditLine& line : linesOf(fileName)) {
            words.prepend(line.operation);
            QCOMPARE(line.outcome, text("refused"));
        }
        QCOMPARE(words.join(QLatin1Char(' ')), text("logOn logOff checkPassword addAccount changeAccount setPassword "
                                                    "lockAccount unlockAccount removeAccount"));
    }

    void whoDidItIsWhoIsLoggedOnOrTheMachinesUser()
    {
        const QString fileName = m_files.path(text("users.db"));
        QString current = text("ann");
        AccountLog log(fileName, text("desk 1"), [&current] { return current; });
        AccountEvent own = eventOf(Kind::LogOn, "bob");
        own.user = text("bob");
        QVERIFY(log.record(own)); // says so itself
        QVERIFY(log.record(eventOf(Kind::Lock, "bob")));
        current.clear();
        QVERIFY(log.record(eventOf(Kind::Unlock, "bob")));
        QVERIFY(AccountLog(fileName, text("project tool")).record(eventOf(Kind::Remove, "bob")));
        QStringList users;
        for (const AuditLine& line : linesOf(fileName))
            users.prepend(line.user);
        QCOMPARE(users, (QStringList{text("bob"), text("ann"), machineUser(), machineUser()}));
        QVERIFY(!machineUser().isEmpty());
    }

    void aLineAboutAnAccountIsNoneAboutTheProcess()
    {
        const QString fileName = m_files.path(text("mixed.db"));
        AccountLog accounts(fileName, text("desk 1"));
        AuditLog operations;
        QVERIFY(operations.open(fileName));
        const QDateTime now = QDateTime::currentDateTimeUtc();
        ScadaOperationMessage command;
        command.tag = text("PUMP");
        command.time = now;
        for (int time = 0; time < 3; ++time) {
            QVERIFY(operations.append(command, text("desk 1")));
            QVERIFY(accounts.record(eventOf(Kind::LogOn, "bob")));
        }
        QCOMPARE(operations.verify().value_or(-1), qint64(6));
        // As many as are asked for, whatever stands between them.
        QCOMPARE(operations.read(now.addDays(-1), now.addDays(1), 3)->size(), 3);
        QCOMPARE(operations.read(now.addDays(-1), now.addDays(1), 2)->size(), 2);
        QCOMPARE(operations.read(now.addDays(-1), now.addDays(1), 100)->size(), 3);
        const auto newest = operations.newest(2);
        QCOMPARE(newest->at(0).subject, text("bob"));
        QCOMPARE(newest->at(1).subject, text("PUMP"));
    }

    void nothingIsMadeBeforeTheFirstLine()
    {
        const QString fileName = m_files.path(text("late.db"));
        const AccountLog log(fileName, text("desk 1"));
        QVERIFY(!QFile::exists(fileName));
    }

    void aFileThatComesLaterIsUsed()
    {
        const QString fileName = m_files.path(text("later/operating.db"));
        AccountLog log(fileName, text("desk 1"));
        const auto failed = log.record(eventOf(Kind::LogOn, "bob"));
        QVERIFY(!failed);
        QVERIFY2(failed.error().startsWith(QDir::toNativeSeparators(fileName)), qPrintable(failed.error()));
        QVERIFY(QDir().mkpath(m_files.path(text("later"))));
        QVERIFY(log.record(eventOf(Kind::LogOn, "bob")));
        QCOMPARE(linesOf(fileName).size(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_AccountLog)
#include "tst_accountlog.moc"
