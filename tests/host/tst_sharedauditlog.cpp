// The audit log while several programs have it open.

#include "host/accounts/accountevent.h"
#include "host/control/auditlog.h"
#include "tests/support/temporaryfiles.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QMap>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

constexpr int writers = 3;
constexpr int linesOfEach = 60; // few enough for each to have its turn in time

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

AccountEvent logOnOf(const QString& user)
{
    AccountEvent event;
    event.account = user;
    event.user = user;
    return event;
}

QString failureOf(const tl::expected<void, QString>& done)
{
    return done ? QString() : done.error();
}

/// What a program does that writes so many lines, and waits then to be killed or to have its input closed.
int writeLines(const QString& fileName, const QString& user, int count)
{
    AuditLog log;
    QString failure = failureOf(log.open(fileName));
    for (int line = 1; line <= count && failure.isEmpty(); ++line)
        failure = failureOf(log.append(logOnOf(user), QString::number(line), QDateTime::currentDateTimeUtc()));
    if (!failure.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(failure));
        return 1;
    }
    std::printf("written\n");
    std::fflush(stdout);
    return std::getchar() == EOF ? 0 : 1;
}

std::unique_ptr<QProcess> startWriter(const QString& fileName, const QString& user, int count)
{
    auto program = std::make_unique<QProcess>();
    program->start(QCoreApplication::applicationFilePath(), {text("--write"), fileName, user, QString::number(count)});
    return program;
}

/// Whether the lines are written.
bool awaitLines(QProcess& program)
{
    return program.waitForReadyRead(60000) && program.readAllStandardOutput() == "written\n";
}

bool end(QProcess& program)
{
    program.closeWriteChannel();
    return program.waitForFinished(30000) && program.exitCode() == 0;
}

/// Every file of a folder with its bytes.
QMap<QString, QByteArray> filesOf(const QString& folder)
{
    QMap<QString, QByteArray> files;
    const QStringList names = QDir(folder).entryList(QDir::Files);
    for (const QString& name : names) {
        QFile file(QDir(folder).filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s can't be read", qPrintable(name));
        files.insert(name, file.readAll());
    }
    return files;
}

QString verdictOf(const AuditLog& log)
{
    const auto verified = log.verify();
    return verified ? QString::number(*verified) : verified.error();
}

} // namespace

class tst_SharedAuditLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void programsThatWriteAtOnceKeepOneChain()
    {
        const TemporaryFiles files;
        const QString fileName = files.path(text("operating.db"));
        AuditLog own;
        QCOMPARE(failureOf(own.open(fileName)), QString());
        std::vector<std::unique_ptr<QProcess>> programs;
        for (int writer = 0; writer < writers; ++writer)
            programs.push_back(startWriter(fileName, QString::number(writer), linesOfEach));
        // Whoever verifies meanwhile sees what stood at one moment.
        AuditLog reader;
        int seen = 0;
        const QDeadlineTimer deadline(60000);
        while (seen < writers * linesOfEach / 2) {
            QCOMPARE(failureOf(reader.openReadOnly(fileName)), QString());
            for (int time = 0; time < 20; ++time) {
                const auto verified = reader.verify();
                QVERIFY2(verified, verified ? "" : qPrintable(verified.error()));
                seen = static_cast<int>(*verified);
            }
            QVERIFY(!reader.isOvertaken());
            QVERIFY(!deadline.hasExpired());
        }
        for (const auto& program : programs)
            QVERIFY2(awaitLines(*program), program->readAllStandardError().constData());
        for (const auto& program : programs)
            QVERIFY(end(*program));
        QCOMPARE(verdictOf(own), QString::number(writers * linesOfEach));
        const auto lines = own.newest(writers * linesOfEach);
        QVERIFY(lines);
        QMap<QString, int> first; // each one's lines are there, in their order
        for (const AuditLine& line : *lines) {
            int& above = first[line.user];
            QCOMPARE(line.workplace.toInt(), above == 0 ? linesOfEach : above - 1);
            above = line.workplace.toInt();
        }
        QCOMPARE(first, (QMap<QString, int>{{text("0"), 1}, {text("1"), 1}, {text("2"), 1}}));
    }

    void aCompleteFileIsOpenedWhileAnotherWrites()
    {
        const TemporaryFiles files;
        const QString fileName = files.path(text("operating.db"));
        QVERIFY(AuditLog().open(fileName));
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(text("QSQLITE"), text("other"));
            other.setDatabaseName(fileName);
            QVERIFY(other.open());
            QVERIFY(QSqlQuery(other).exec(text("BEGIN IMMEDIATE")));
            AuditLog log;
            QCOMPARE(failureOf(log.open(fileName)), QString());
            QCOMPARE(verdictOf(log), text("0"));
        }
        QSqlDatabase::removeDatabase(text("other"));
    }

    void readingChangesNothing_data()
    {
        QTest::addColumn<bool>("isAtWork");
        QTest::addColumn<bool>("isKilled");
        QTest::newRow("of a program at work") << true << false;
        QTest::newRow("of a program that has ended") << false << false;
        QTest::newRow("of a program that was killed") << false << true;
    }
    void readingChangesNothing()
    {
        QFETCH(bool, isAtWork);
        QFETCH(bool, isKilled);
        const TemporaryFiles files;
        const QString fileName = files.path(text("operating.db"));
        const auto program = startWriter(fileName, text("ann"), 7);
        QVERIFY2(awaitLines(*program), program->readAllStandardError().constData());
        if (isKilled) {
            program->kill();
            QVERIFY(program->waitForFinished(30000));
        } else if (!isAtWork) {
            QVERIFY(end(*program));
        }
        const QString folder = files.path(QString());
        const auto before = filesOf(folder);
        QCOMPARE(before.size(), isAtWork || isKilled ? 3 : 1); // the journal and its index
        {
            AuditLog log;
            QCOMPARE(failureOf(log.openReadOnly(fileName)), QString());
            QCOMPARE(verdictOf(log), text("7"));
            QCOMPARE(log.newest(2)->size(), 2);
            QVERIFY(!log.append(logOnOf(text("eve")), {}, QDateTime::currentDateTimeUtc()));
            QVERIFY(!log.isOvertaken());
        }
        QCOMPARE(filesOf(folder).keys(), before.keys());
        for (const QString& name : {text("operating.db"), text("operating.db-wal")})
            QCOMPARE(filesOf(folder).value(name), before.value(name));
        if (isAtWork)
            QVERIFY(end(*program));
        else
            QCOMPARE(filesOf(folder), before);
    }

    void aWriterThatComesOrGoesIsNoticed()
    {
        const TemporaryFiles files;
        const QString fileName = files.path(text("operating.db"));
        QVERIFY(AuditLog().open(fileName));
        QFile file(fileName); // whose times are too coarse for two writers one right behind the other
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTimeUtc().addDays(-1), QFileDevice::FileModificationTime));
        file.close();
        AuditLog reader;
        QCOMPARE(failureOf(reader.openReadOnly(fileName)), QString());
        QVERIFY(!reader.isOvertaken());
        {
            AuditLog writer;
            QVERIFY(writer.open(fileName));
            QVERIFY(writer.append(logOnOf(text("ann")), {}, QDateTime::currentDateTimeUtc()));
            QVERIFY(reader.isOvertaken()); // is at work
        }
        QVERIFY(reader.isOvertaken()); // was at work
        QCOMPARE(failureOf(reader.openReadOnly(fileName)), QString());
        QVERIFY(!reader.isOvertaken());
        QCOMPARE(verdictOf(reader), text("1"));
    }

    void aCopyWithoutTheIndexOfItsJournalIsRefused()
    {
        const TemporaryFiles files;
        const QString fileName = files.path(text("operating.db"));
        AuditLog writer;
        QVERIFY(writer.open(fileName));
        QVERIFY(writer.append(logOnOf(text("ann")), {}, QDateTime::currentDateTimeUtc()));
        const QString copy = files.path(text("copy.db"));
        QVERIFY(QFile::copy(fileName, copy));
        QVERIFY(QFile::copy(fileName + text("-wal"), copy + text("-wal")));
        AuditLog reader;
        QCOMPARE(failureOf(reader.openReadOnly(copy)),
                 QDir::toNativeSeparators(copy) + text(": the audit log can't be read: copy.db-shm is missing"));
        QVERIFY(!QFile::exists(copy + text("-shm")));
        QVERIFY(QFile::copy(fileName + text("-shm"), copy + text("-shm")));
        QCOMPARE(failureOf(reader.openReadOnly(copy)), QString());
        QCOMPARE(verdictOf(reader), text("1"));
    }

    void aNameMayHoldWhatAddressesAreMadeOf()
    {
        const TemporaryFiles files;
        const QString fileName = files.path(text("plant 100%25 #1?mode=rw&x.db"));
        {
            AuditLog writer;
            QVERIFY(writer.open(fileName));
            QVERIFY(writer.append(logOnOf(text("ann")), {}, QDateTime::currentDateTimeUtc()));
            AuditLog reader;
            QCOMPARE(failureOf(reader.openReadOnly(fileName)), QString());
            QCOMPARE(verdictOf(reader), text("1"));
        }
        AuditLog reader;
        QCOMPARE(failureOf(reader.openReadOnly(fileName)), QString());
        QCOMPARE(verdictOf(reader), text("1"));
        QCOMPARE(filesOf(files.path(QString())).size(), 1);
    }

    void whatIsNoAuditLogIsRefusedAndLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no database") << QByteArray(5000, 'x') << text("file is not a database");
        QTest::newRow("an empty file") << QByteArray() << text("no such table: audit_log");
    }
    void whatIsNoAuditLogIsRefusedAndLeftAlone()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        const TemporaryFiles files;
        const QString fileName = files.write(text("operating.db"), bytes);
        AuditLog log;
        const QString failure = failureOf(log.openReadOnly(fileName));
        QVERIFY2(failure.startsWith(QDir::toNativeSeparators(fileName)), qPrintable(failure));
        QVERIFY2(failure.contains(reason), qPrintable(failure));
        QVERIFY(!log.isOpen());
        QCOMPARE(filesOf(files.path(QString())), (QMap<QString, QByteArray>{{text("operating.db"), bytes}}));
    }

    void whatIsNotThereIsNotMade()
    {
        const TemporaryFiles files;
        AuditLog log;
        QVERIFY(failureOf(log.openReadOnly(files.path(text("operating.db")))).contains(text("there is no such file")));
        QVERIFY(!log.openReadOnly(files.path(QString()))); // a folder
        QVERIFY(!log.verify());
        QCOMPARE(filesOf(files.path(QString())).size(), 0);
    }
};

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const QStringList given = QCoreApplication::arguments();
    if (given.size() == 5 && given[1] == text("--write"))
        return writeLines(given[2], given[3], given[4].toInt());
    tst_SharedAuditLog test;
    return QTest::qExec(&test, argumentCount, arguments);
}

#include "tst_sharedauditlog.moc"
