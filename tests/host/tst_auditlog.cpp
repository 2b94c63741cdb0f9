#include "host/control/auditlog.h"

#include "tests/support/temporaryfiles.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

using Command = ScadaOperationMessage::Operation;
using Outcome = ScadaOperationMessage::Outcome;

namespace {

constexpr qint64 begin = Q_INT64_C(1600000000000);

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

QDateTime at(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(begin + ms, Qt::UTC);
}

ScadaOperationMessage message(quint32 number)
{
    ScadaOperationMessage made;
    made.requestId = number;
    made.operation = Command::SetPoint;
    made.outcome = Outcome::Done;
    made.objectType = Korvane::ScadaObjectType::AnalogPoint;
    made.objectId = 200001;
    made.tag = text("LEVEL");
    made.value = 42.5;
    made.before = 40.0;
    made.user = text("ann");
    made.secondUser = text("bob");
    made.reason = QStringLiteral("reason %1").arg(number);
    made.text = text("why");
    made.time = at(number * 1000);
    return made;
}

/// A log of five lines in a file, and whoever else opens that file.
class WrittenLog
{
public:
    WrittenLog()
    {
        if (const auto opened = log.open(fileName); !opened)
            qFatal("%s", qPrintable(opened.error()));
        for (quint32 number = 1; number <= 5; ++number)
            append(number);
    }
    ~WrittenLog()
    {
        for (const QString& name : QSqlDatabase::connectionNames()) {
            if (name == text("other"))
                QSqlDatabase::removeDatabase(name);
        }
    }
    void append(quint32 number)
    {
        if (const auto written = log.append(message(number), text("desk 1")); !written)
            qFatal("%s", qPrintable(written.error()));
    }
    /// Empty where it was done.
    QString execute(const QString& sql) const
    {
        QSqlDatabase other = QSqlDatabase::contains(text("other"))
                                 ? QSqlDatabase::database(text("other"))
                                 : QSqlDatabase::addDatabase(text("QSQLITE"), text("other"));
        other.setDatabaseName(fileName);
        if (!other.isOpen() && !other.open())
            qFatal("%s", qPrintable(other.lastError().text()));
        QSqlQuery query(other);
        return query.exec(sql) ? QString() : query.lastError().databaseText();
    }
    void dropTriggers() const
    {
        for (const char* name : {"update", "delete", "insert"}) {
            const QString failed = execute(text("DROP TRIGGER audit_log_keeps_on_") + text(name));
            if (!failed.isEmpty())
                qFatal("%s", qPrintable(failed));
        }
    }

    TemporaryFiles files;
    QString fileName = files.path(text("operating.db"));
    AuditLog log;
};

QString numbers(const QList<ScadaOperationMessage>& messages)
{
    QStringList all;
    for (const ScadaOperationMessage& each : messages)
        all.append(QString::number(each.requestId));
    return all.join(QLatin1Char(' '));
}

} // namespace

class tst_AuditLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLineIsReadAsItWasWritten()
    {
        WrittenLog written;
        const auto lines = written.log.read(at(2000), at(2000), 10);
        QCOMPARE(lines->size(), 1);
        QVERIFY(lines->first().isEqual(message(2)));
        QCOMPARE(written.log.verify().value_or(-1), qint64(5));
    }

    void whatAMessageDoesNotHaveIsNotReadEither()
    {
        AuditLog log;
        QVERIFY(log.openInMemory());
        ScadaOperationMessage bare;
        bare.time = at(0);
        QVERIFY(log.append(bare, {}));
        const auto lines = log.read(at(0), at(0), 1);
        QVERIFY(!lines->first().value.isValid());
        QVERIFY(!lines->first().before.isValid());
        QCOMPARE(lines->first().requestId, quint32(0));
        QCOMPARE(log.verify().value_or(-1), qint64(1));
    }

    void everyOperationAndOutcomeIsKept()
    {
        AuditLog log;
        QVERIFY(log.openInMemory());
        const int last = static_cast<int>(Command::ResetStatistics);
        for (int number = 0; number <= last; ++number) {
            ScadaOperationMessage each = message(quint32(number) + 1);
            each.operation = static_cast<Command>(number);
            each.outcome = static_cast<Outcome>(number % 12);
            QVERIFY(log.append(each, text("desk")));
        }
        const auto lines = log.read(at(0), at(1000000), 100);
        for (int number = 0; number <= last; ++number) {
            QCOMPARE(lines->at(last - number).operation, static_cast<Command>(number));
            QCOMPARE(lines->at(last - number).outcome, static_cast<Outcome>(number % 12));
        }
    }

    void aSpanIsReadNewestFirst_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<int>("most");
        QTest::addColumn<QString>("found");
        QTest::newRow("all") << 0 << 9000 << 100 << text("5 4 3 2 1");
        QTest::newRow("both ends are included") << 2000 << 4000 << 100 << text("4 3 2");
        QTest::newRow("not what lies a millisecond outside") << 2001 << 3999 << 100 << text("3");
        QTest::newRow("the newest of too many") << 0 << 4000 << 2 << text("4 3");
        QTest::newRow("none") << 0 << 9000 << 0 << QString();
        QTest::newRow("fewer than none") << 0 << 9000 << -3 << QString();
        QTest::newRow("a span that ends before it begins") << 4000 << 2000 << 100 << QString();
    }
    void aSpanIsReadNewestFirst()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(int, most);
        QFETCH(QString, found);
        WrittenLog written;
        QCOMPARE(numbers(*written.log.read(at(from), at(to), most)), found);
    }

    void anyTextIsKept_data()
    {
        QTest::addColumn<QString>("reason");
        QTest::newRow("empty") << QString();
        QTest::newRow("quotes") << text("it's \"so\"; DROP TABLE audit_log; --");
        QTest::newRow("a NUL") << QString(QChar(0)) + text("behind") + QChar(0);
        QTest::newRow("lines and controls") << text("a\r\nb\tc\x01\x7f");
        QTest::newRow("two planes") << QString::fromUtf8("밸브 \xF0\x9F\x98\x80");
        QTest::newRow("backslashes") << text("\\u0041\\\\");
        QTest::newRow("10 MB") << QString(10 * 1024 * 1024, QLatin1Char('x'));
    }
    void anyTextIsKept()
    {
        QFETCH(QString, reason);
        WrittenLog written;
        ScadaOperationMessage said = message(6);
        said.reason = reason;
        QVERIFY(written.log.append(said, text("desk")));
        QVERIFY(written.log.read(at(6000), at(6000), 1)->first().reason == reason);
        QCOMPARE(written.log.verify().value_or(-1), qint64(6));
        QVERIFY(written.log.open(written.fileName)); // and from the disk
        QVERIFY(written.log.read(at(6000), at(6000), 1)->first().reason == reason);
        QCOMPARE(written.log.verify().value_or(-1), qint64(6));
    }

    void halfACharacterBreaksNothing()
    {
        WrittenLog written;
        ScadaOperationMessage said = message(6);
        said.reason = text("a") + QChar(0xD800) + text("b") + QChar(0xDC00);
        QVERIFY(written.log.append(said, text("desk")));
        written.append(7);
        const QString read = written.log.read(at(6000), at(6000), 1)->first().reason;
        QCOMPARE(read.size(), 4); // something stands where no character was
        QCOMPARE(read[0], QLatin1Char('a'));
        QCOMPARE(read[2], QLatin1Char('b'));
        QCOMPARE(written.log.verify().value_or(-1), qint64(7));
    }

    void theChainGoesOnInTheSameFile()
    {
        WrittenLog written;
        QVERIFY(written.log.open(written.fileName));
        QVERIFY(written.log.isOpen());
        written.append(6);
        QCOMPARE(written.log.verify().value_or(-1), qint64(6));
        AuditLog other;
        QVERIFY(other.open(written.fileName)); // another program
        QVERIFY(other.append(message(7), text("desk 2")));
        written.append(8);
        QCOMPARE(written.log.verify().value_or(-1), qint64(8));
        QCOMPARE(other.verify().value_or(-1), qint64(8));
        QCOMPARE(numbers(*other.read(at(0), at(9000), 3)), text("8 7 6"));
    }

    void theFileRefusesToBeChanged_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::newRow("a line") << text("UPDATE audit_log SET entry = '{}' WHERE line = 2");
        QTest::newRow("a time") << text("UPDATE audit_log SET time_ms = 0");
        QTest::newRow("a line is taken out") << text("DELETE FROM audit_log WHERE line = 5");
        QTest::newRow("all are taken out") << text("DELETE FROM audit_log");
        QTest::newRow("a line takes the place of another")
            << text("INSERT OR REPLACE INTO audit_log VALUES (3, 0, '{}', '')");
        QTest::newRow("a number is taken") << text("INSERT INTO audit_log VALUES (3, 0, '{}', '')");
    }
    void theFileRefusesToBeChanged()
    {
        QFETCH(QString, sql);
        WrittenLog written;
        QCOMPARE(written.execute(sql), text("lines of the audit log are never changed"));
        QCOMPARE(written.log.verify().value_or(-1), qint64(5));
        written.append(6);
        QCOMPARE(written.log.verify().value_or(-1), qint64(6));
    }

    void whatIsChangedAllTheSameIsFound_data()
    {
        QTest::addColumn<QStringList>("statements");
        QTest::addColumn<QString>("found");
        const auto row = [](const char* name, const QStringList& statements, const char* found) {
            QTest::newRow(name) << statements << text(found);
        };
        row("a word of a line", {text("UPDATE audit_log SET entry = replace(entry, 'ann', 'eve') WHERE line = 3")},
            "was changed at or before line 3");
        row("a time", {text("UPDATE audit_log SET time_ms = time_ms + 1 WHERE line = 2")},
            "was changed at or before line 2");
        row("a hash", {text("UPDATE audit_log SET hash = '' WHERE line = 1")}, "was changed at or before line 1");
        row("the last line", {text("UPDATE audit_log SET entry = '{}' WHERE line = 5")},
            "was changed at or before line 5");
        row("the first line is gone", {text("DELETE FROM audit_log WHERE line = 1")}, "lacks line 1");
        row("a line in the middle is gone", {text("DELETE FROM audit_log WHERE line = 3")}, "lacks line 3");
        row("a line is gone and the others moved up",
            {text("DELETE FROM audit_log WHERE line = 3"), text("UPDATE audit_log SET line = 3 WHERE line = 4"),
             text("UPDATE audit_log SET line = 4 WHERE line = 5")},
            "was changed at or before line 3");
        row("the last line is cut off", {text("DELETE FROM audit_log WHERE line = 5")},
            "ends with line 4 and should with 5");
        row("all lines are cut off", {text("DELETE FROM audit_log")}, "ends with line 0 and should with 5");
        row("the end is taken back",
            {text("DELETE FROM audit_log WHERE line = 5"), text("UPDATE audit_end SET line = 4")},
            "ends with line 4 and should with 4");
        row("the end is gone", {text("DELETE FROM audit_end")}, "lacks its end");
        row("a line is put in front",
            {text("INSERT INTO audit_log SELECT 0, time_ms, entry, hash FROM audit_log "
                  "WHERE line = 1")},
            "lacks line 1");
        row("a line is put at the end",
            {text("INSERT INTO audit_log SELECT 6, time_ms, entry, hash FROM audit_log "
                  "WHERE line = 5")},
            "was changed at or before line 6");
        row("a line is put in the middle",
            {text("UPDATE audit_log SET line = 6 WHERE line = 5"), text("UPDATE audit_log SET line = 5 WHERE line = 4"),
             text("INSERT INTO audit_log SELECT 4, time_ms, entry, hash FROM audit_log WHERE line = 3")},
            "was changed at or before line 4");
        row("two lines change places",
            {text("UPDATE audit_log SET line = 99 WHERE line = 2"),
             text("UPDATE audit_log SET line = 2 WHERE line = 3"),
             text("UPDATE audit_log SET line = 3 WHERE line = 99")},
            "was changed at or before line 2");
        row("the texts of two lines change places",
            {text("UPDATE audit_log SET entry = (SELECT entry FROM audit_log AS other WHERE other.line = 3) "
                  "WHERE line = 4")},
            "was changed at or before line 4");
    }
    void whatIsChangedAllTheSameIsFound()
    {
        QFETCH(QStringList, statements);
        QFETCH(QString, found);
        WrittenLog written;
        written.dropTriggers();
        for (const QString& statement : statements)
            QCOMPARE(written.execute(statement), QString());
        const auto verified = written.log.verify();
        QVERIFY(!verified);
        QVERIFY2(verified.error().contains(found), qPrintable(verified.error()));
        QVERIFY(verified.error().startsWith(QDir::toNativeSeparators(written.fileName)));
        if (written.log.append(message(9), text("desk"))) // goes on, and heals nothing
            QVERIFY(!written.log.verify());
        QVERIFY(written.log.open(written.fileName));
        QVERIFY(!written.log.verify());
    }

    void whatCantBeWrittenIsNotThere()
    {
        WrittenLog written;
        QCOMPARE(written.execute(text("CREATE TRIGGER full BEFORE UPDATE ON audit_end BEGIN "
                                      "SELECT RAISE(ABORT, 'the disk is full'); END")),
                 QString());
        const auto failed = written.log.append(message(6), text("desk"));
        QVERIFY(!failed);
        QVERIFY2(failed.error().contains(text("the disk is full")), qPrintable(failed.error()));
        QCOMPARE(written.log.verify().value_or(-1), qint64(5)); // not even half of it
        QCOMPARE(written.execute(text("DROP TRIGGER full")), QString());
        written.append(6);
        QCOMPARE(written.log.verify().value_or(-1), qint64(6));
    }

    void aClosedLogSaysSo()
    {
        AuditLog log;
        QVERIFY(!log.isOpen());
        for (const QString& reason :
             {log.append(message(1), {}).error(), log.read(at(0), at(1), 1).error(), log.verify().error()})
            QVERIFY2(reason.contains(text("is not open")), qPrintable(reason));
        WrittenLog written;
        written.log.close();
        QVERIFY(!written.log.append(message(6), {}));
    }

    void whatIsNoDatabaseIsRefused()
    {
        TemporaryFiles files;
        const QString name = files.write(text("operating.db"), QByteArray(5000, 'x'));
        AuditLog log;
        const auto opened = log.open(name);
        QVERIFY(!opened);
        QVERIFY2(opened.error().contains(name), qPrintable(opened.error()));
        QVERIFY(!log.isOpen());
        QVERIFY(!log.open(files.path(text("nowhere/operating.db"))));
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray(5000, 'x')); // left alone
    }
};

QTEST_GUILESS_MAIN(tst_AuditLog)
#include "tst_auditlog.moc"
