// The project tool itself, run as a user runs it.

#include "host/accounts/accountevent.h"
#include "host/control/auditlog.h"
#include "host/core/machineuser.h"
#include "tests/support/testproject.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// What a run of the program left.
struct Run
{
    int exitCode = -1;
    QString out;
    QString errors;
};

Run run(const QStringList& arguments, const QString& folder = {}, const QByteArray& input = {})
{
    QProcess program;
    program.setWorkingDirectory(folder);
    program.start(QStringLiteral(KORVANE_PROJECT), arguments);
    program.write(input);
    program.closeWriteChannel();
    Run left;
    if (!program.waitForFinished(60000) || program.exitStatus() != QProcess::NormalExit)
        return left;
    left.exitCode = program.exitCode();
    left.out = QString::fromUtf8(program.readAllStandardOutput());
    left.errors = QString::fromUtf8(program.readAllStandardError());
    return left;
}

/// Every file of a folder with its bytes' hash.
QMap<QString, QByteArray> filesOf(const QString& folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator each(folder, QDir::Files, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        QFile file(each.next());
        if (file.open(QIODevice::ReadOnly) && !file.fileName().contains(text("/.changes/")))
            files.insert(file.fileName(), QCryptographicHash::hash(file.readAll(), QCryptographicHash::Md5));
    }
    return files;
}

/// The demo project in a folder of the test's own.
void copyDemo(const TemporaryFiles& files)
{
    const QString source = QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop");
    QDirIterator each(source, QDir::Files, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        const QString name = each.next();
        const QString copy = files.path(text("demo")) + name.mid(source.size());
        if (!QDir().mkpath(QFileInfo(copy).path()) || !QFile::copy(name, copy))
            qFatal("%s: not copied", qPrintable(name));
    }
}

/// Writes as many log-ons, each of another user, into the project's audit log.
void writeLog(const TestProject& project, int lines)
{
    AuditLog log;
    bool isDone = log.open(project.path("operating.db")).has_value();
    for (int line = 1; line <= lines; ++line) {
        AccountEvent event;
        event.account = QStringLiteral("user%1").arg(line);
        event.user = event.account;
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(Q_INT64_C(1600000000000) + line, Qt::UTC);
        isDone = isDone && log.append(event, text("desk 1"), time);
    }
    if (!isDone)
        qFatal("no audit log");
}

/// Changes the file of an audit log as nobody should.
void tamper(const TestProject& project, const QStringList& statements)
{
    const QString connection = text("tampering");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(text("QSQLITE"), connection);
        database.setDatabaseName(project.path("operating.db"));
        bool isDone = database.open();
        for (const char* trigger : {"update", "delete", "insert"})
            isDone = isDone && QSqlQuery(database).exec(text("DROP TRIGGER audit_log_keeps_on_") + text(trigger));
        for (const QString& statement : statements)
            isDone = isDone && QSqlQuery(database).exec(statement);
        if (!isDone)
            qFatal("not tampered with");
    }
    QSqlDatabase::removeDatabase(connection);
}

} // namespace

class tst_ProjectTool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpIsThereForAllAndForEach()
    {
        const Run all = run({text("--help")});
        QCOMPARE(all.exitCode, 0);
        for (const char* command : {"check", "where-used", "rename", "render", "import", "export", "user", "audit"}) {
            QVERIFY2(all.out.contains(QStringLiteral("\n  %1 ").arg(text(command))), command);
            const Run one = run({text(command), text("--help")});
            QCOMPARE(one.exitCode, 0);
            QVERIFY2(one.out.contains(text(command)), qPrintable(one.out));
            QCOMPARE(one.errors, QString());
        }
        QCOMPARE(run({text("--version")}).out, text("korvane-project " KORVANE_VERSION "\n"));
    }

    void badLinesAreRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no command") << QStringList() << text("name a command");
        QTest::newRow("an unknown command") << QStringList{text("chekc")} << text("there is no command \"chekc\"");
        QTest::newRow("an unknown option") << QStringList{text("check"), text("--x")} << text("Unknown option 'x'");
        QTest::newRow("too few") << QStringList{text("rename"), text("A")} << text("arguments are missing");
        QTest::newRow("too many") << QStringList{text("check"), text("a"), text("b")} << text("too many arguments");
        QTest::newRow("names with --undo")
            << QStringList{text("rename"), text("--undo"), text("A"), text("B")} << text("too many arguments");
        QTest::newRow("no file for a picture") << QStringList{text("render"), text("p")} << text("-o FILE");
        QTest::newRow("a zoom that is none")
            << QStringList{text("render"), text("p"), text("-o"), text("p.png"), text("--zoom=9")} << text("--zoom");
        QTest::newRow("no file for a list") << QStringList{text("export")} << text("-o FILE");
        QTest::newRow("no number of lines")
            << QStringList{text("audit"), text("--list"), text("--count=0")} << text("--count");
        QTest::newRow("a number of lines, of none")
            << QStringList{text("audit"), text("--count"), text("5")} << text("--count");
    }
    void badLinesAreRefused()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, reason);
        const Run left = run(arguments);
        QCOMPARE(left.exitCode, 2);
        QVERIFY2(left.errors.startsWith(text("korvane-project: ")), qPrintable(left.errors));
        QVERIFY2(left.errors.contains(reason), qPrintable(left.errors));
        QCOMPARE(left.out, QString());
    }

    void whatIsNoProjectFails_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("where-used") << QStringList{text("where-used"), text("A")};
        QTest::newRow("rename") << QStringList{text("rename"), text("A"), text("B")};
        QTest::newRow("rename --undo") << QStringList{text("rename"), text("--undo")};
        QTest::newRow("render") << QStringList{text("render"), text("p"), text("-o"), text("p.png")};
        QTest::newRow("import") << QStringList{text("import"), text("x.csv")};
        QTest::newRow("export") << QStringList{text("export"), text("-o"), text("x.csv")};
        QTest::newRow("audit") << QStringList{text("audit")};
    }
    void whatIsNoProjectFails()
    {
        QFETCH(const QStringList, arguments);
        const TemporaryFiles files;
        files.write(text("a"), {});
        const QString folder = files.path(QString());
        const Run left = run(arguments, folder);
        QCOMPARE(left.exitCode, 1);
        QVERIFY2(left.errors.startsWith(text("korvane-project: ")), qPrintable(left.errors));
        QCOMPARE(filesOf(folder).size(), 1);
    }

    void theDemoProjectHasNoErrors()
    {
        const Run left = run({text("check"), QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop")});
        QCOMPARE(left.errors, QString());
        QVERIFY2(left.out.contains(text("0 errors, ")), qPrintable(left.out));
        QCOMPARE(left.exitCode, 0);
    }

    void findingsArePrintedForPeopleAndPrograms()
    {
        const TestProject project;
        project.write("pages/plant.pws",
                      TestProject::json(
                          "{'format': 'korvane-page', 'version': 1, 'layers': [{'shapes': [\n{'class': 'Label', "
                          "'name': 'one', 'place': [0, 0, 9, 9],\n'operation': {'kind': 'raise', 'tag': 'X'}}]}]}"));
        const Run people = run({text("check")}, project.folder());
        QCOMPARE(people.exitCode, 1);
        QCOMPARE(people.out, text("pages/plant.pws:3: error: \"one\": \"X\" names no known object [unknown-tag]\n"
                                  "1 errors, 0 warnings\n"));
        const Run programs = run({text("check"), text("--json")}, project.folder());
        QCOMPARE(programs.exitCode, 1);
        const QJsonObject json = QJsonDocument::fromJson(programs.out.toUtf8()).object();
        QCOMPARE(json.value(text("errors")).toInt(), 1);
        const QJsonObject finding = json.value(text("findings")).toArray().at(0).toObject();
        QCOMPARE(finding, QJsonObject({{text("severity"), text("error")},
                                       {text("code"), text("unknown-tag")},
                                       {text("file"), text("pages/plant.pws")},
                                       {text("line"), 3},
                                       {text("object"), text("one")},
                                       {text("text"), text("\"X\" names no known object")}}));
    }

    void warningsAloneAreFine()
    {
        const TestProject project;
        project.write(
            "pages/plant.pws",
            TestProject::json("{'format': 'korvane-page', 'version': 1, 'events': [{'trigger': 6, 'type': 1001, "
                              "'script': 'control.operate()'}], 'layers': []}"));
        const Run left = run({text("check"), project.folder()});
        QVERIFY2(left.out.endsWith(text("0 errors, 1 warnings\n")), qPrintable(left.out));
        QCOMPARE(left.exitCode, 0);
    }

    void usesArePrinted()
    {
        const TestProject project;
        const Run people = run({text("where-used"), text("#200001"), project.folder()});
        QCOMPARE(people.out, text("points.csv:2: \"FLOW\" object: FLOW\n1 places\n"));
        QCOMPARE(people.exitCode, 0);
        const Run programs = run({text("where-used"), text("FLOW"), project.folder(), text("--json")});
        const QJsonArray uses = QJsonDocument::fromJson(programs.out.toUtf8()).object().value(text("uses")).toArray();
        QCOMPARE(uses.size(), 1);
        QCOMPARE(uses.at(0).toObject().value(text("what")).toString(), text("object"));
        QCOMPARE(run({text("where-used"), text("NONE"), project.folder()}).exitCode, 1);
    }

    void aPointOfTheDemoIsRenamedAndTakenBack()
    {
        const TemporaryFiles files;
        copyDemo(files);
        const QString folder = files.path(text("demo"));
        const auto before = filesOf(folder);
        const Run preview = run({text("rename"), text("TK101.LEVEL"), text("TK101.FILL"), folder, text("--dry-run")});
        QCOMPARE(preview.exitCode, 0);
        QVERIFY2(preview.out.contains(text("- TK101.LEVEL\n+ TK101.FILL\n")), qPrintable(preview.out));
        QCOMPARE(filesOf(folder), before);

        const int uses = run({text("where-used"), text("TK101.LEVEL"), folder}).out.count(QLatin1Char('\n'));
        QVERIFY(uses > 3);
        const Run renamed = run({text("rename"), text("TK101.LEVEL"), text("TK101.FILL"), folder});
        QCOMPARE(renamed.errors, QString());
        QCOMPARE(renamed.exitCode, 0);
        QCOMPARE(run({text("where-used"), text("TK101.FILL"), folder}).out.count(QLatin1Char('\n')), uses);
        QCOMPARE(run({text("where-used"), text("TK101.LEVEL"), folder}).exitCode, 1);
        QCOMPARE(run({text("check"), folder}).exitCode, 0);

        const Run undone = run({text("rename"), text("--undo"), folder});
        QCOMPARE(undone.out, text("taken back: rename of \"TK101.LEVEL\" to \"TK101.FILL\"\n"));
        QCOMPARE(filesOf(folder), before);
        QCOMPARE(run({text("rename"), text("--undo"), folder}).exitCode, 1);
    }

    void aRenameThatWasInterruptedIsEndedByTheNextRun()
    {
        const TestProject project;
        const QByteArray list = project.read("points.csv");
        const QByteArray renamed = QByteArray(list).replace("FLOW", "FLUX");
        QVERIFY(QDir().mkpath(project.path(".changes/pending")));
        project.write(".changes/pending/0.old", list);
        project.write(".changes/pending/0.new", renamed);
        project.write(".changes/pending/journal.json",
                      "{\"title\": \"a rename\", \"undo\": false, \"files\": [[\"points.csv\", \"" +
                          QCryptographicHash::hash(renamed, QCryptographicHash::Md5).toHex() + "\"]]}");
        const Run left = run({text("where-used"), text("FLUX"), project.folder()});
        QCOMPARE(left.exitCode, 0);
        QVERIFY2(left.errors.contains(text("an interrupted change was completed: a rename")), qPrintable(left.errors));
        QCOMPARE(project.read("points.csv"), renamed);
    }

    void pagesAreDrawn()
    {
        const TemporaryFiles files;
        const QString demo = QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop");
        const QString picture = files.path(text("p.png"));
        const Run left = run({text("render"), text("overview"), demo, text("-o"), picture, text("--zoom=0.5")});
        QCOMPARE(left.errors, QString());
        QCOMPARE(left.exitCode, 0);
        QCOMPARE(QImage(picture).size(), QSize(800, 450));

        const QString live = files.path(text("live.png"));
        const Run withValues = run({text("render"), text("overview"), demo, text("-o"), live, text("--zoom=0.5"),
                                    text("--source"), text("simulation?seed=1")});
        QCOMPARE(withValues.errors, QString());
        QCOMPARE(withValues.exitCode, 0);
        QVERIFY(QImage(live).size() == QSize(800, 450) && QImage(live) != QImage(picture));

        for (const char* name : {"p.pdf", "p.svg"}) {
            QCOMPARE(run({text("render"), text("overview"), demo, text("-o"), files.path(text(name))}).exitCode, 0);
            QVERIFY(QFileInfo(files.path(text(name))).size() > 10000);
        }
        QCOMPARE(run({text("render"), text("none"), demo, text("-o"), picture}).exitCode, 1);
    }

    void aListThatWasWrittenReadsBackAsTheSame()
    {
        const TemporaryFiles files;
        copyDemo(files);
        const QString folder = files.path(text("demo"));
        const QString list = files.path(text("list.csv"));
        const auto before = filesOf(folder);
        QCOMPARE(run({text("export"), folder, text("-o"), list}).exitCode, 0);
        const Run same = run({text("import"), list, folder});
        QCOMPARE(same.exitCode, 0);
        QVERIFY2(same.out.startsWith(text("0 added, 0 changed, ")), qPrintable(same.out));
        QCOMPARE(filesOf(folder), before);

        QFile file(list);
        QVERIFY(file.open(QIODevice::Append));
        file.write("205000,NEW,analog" + QByteArray(file.size() > 0 ? 42 : 0, ',') + "\n");
        file.close();
        const Run preview = run({text("import"), list, folder, text("--dry-run")});
        QVERIFY2(preview.out.startsWith(text("added: NEW\n1 added, 0 changed, ")),
                 qPrintable(preview.out + preview.errors));
        QCOMPARE(filesOf(folder), before);
        QCOMPARE(run({text("import"), list, folder}).exitCode, 0);
        QCOMPARE(run({text("where-used"), text("NEW"), folder}).exitCode, 0);
        files.write(text("list.csv"), "id,name,kind\n200001,OTHER,analog\n");
        const Run refused = run({text("import"), list, folder});
        QCOMPARE(refused.exitCode, 1);
        QVERIFY2(refused.errors.contains(text("names are changed by renaming")), qPrintable(refused.errors));
    }

    void aSoundAuditLogIsToldToBeSo()
    {
        const TestProject project;
        writeLog(project, 3);
        const auto before = filesOf(project.folder());
        const Run left = run({text("audit")}, project.folder());
        QCOMPARE(left.errors, QString());
        QCOMPARE(left.out, text("3 lines, all as they were written\n"));
        QCOMPARE(left.exitCode, 0);
        QCOMPARE(run({text("audit"), project.folder()}).out, left.out);
        QCOMPARE(filesOf(project.folder()), before);
    }

    void anAuditLogThatWasTamperedWithIsToldToBeSo_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("found");
        QTest::newRow("a line was changed")
            << text("UPDATE audit_log SET entry = replace(entry, 'user2', 'user9') WHERE line = 2")
            << text("was changed at or before line 2");
        QTest::newRow("a line was taken out") << text("DELETE FROM audit_log WHERE line = 1") << text("lacks line 1");
        QTest::newRow("the last line was cut off")
            << text("DELETE FROM audit_log WHERE line = 3") << text("ends with line 2 and should with 3");
        QTest::newRow("a line was put in") << text("INSERT INTO audit_log VALUES (4, 1600000000004, '{}', '')")
                                           << text("was changed at or before line 4");
        QTest::newRow("its end was taken out") << text("DELETE FROM audit_end") << text("lacks its end");
        QTest::newRow("all of it is gone") << text("DROP TABLE audit_log") << text("no such table: audit_log");
    }
    void anAuditLogThatWasTamperedWithIsToldToBeSo()
    {
        QFETCH(const QString, statement);
        QFETCH(const QString, found);
        const TestProject project;
        writeLog(project, 3);
        tamper(project, {statement});
        const Run left = run({text("audit"), project.folder()});
        QCOMPARE(left.exitCode, 1);
        QVERIFY2(left.errors.startsWith(text("korvane-project: ")), qPrintable(left.errors));
        QVERIFY2(left.errors.contains(text("operating.db: the audit log ")), qPrintable(left.errors));
        QVERIFY2(left.errors.contains(found), qPrintable(left.errors));
        QCOMPARE(left.out, QString());
    }

    void anAuditLogThatIsNotThereIsNotMade()
    {
        const TestProject project;
        const auto before = filesOf(project.folder());
        const Run left = run({text("audit"), project.folder()});
        QCOMPARE(left.exitCode, 1);
        QVERIFY2(left.errors.contains(text("operating.db: the audit log can't be read: there is no such file")),
                 qPrintable(left.errors));
        QCOMPARE(filesOf(project.folder()), before);
        // What a program left beside a file that somebody has taken away.
        QFile journal(project.folder() + text("/operating.db-wal"));
        QVERIFY(journal.open(QIODevice::WriteOnly));
        journal.close();
        const Run gone = run({text("audit"), project.folder()});
        QCOMPARE(gone.exitCode, 1);
        QVERIFY2(gone.errors.contains(text("there is no such file")), qPrintable(gone.errors));
    }

    void theNewestLinesArePrinted()
    {
        const TestProject project;
        writeLog(project, 102);
        const QStringList all = run({text("audit"), project.folder(), text("--list")}).out.split(QLatin1Char('\n'));
        QCOMPARE(all.size(), 103); // head, 100 lines, verdict, the end
        QCOMPARE(all[0],
                 text("LINE  TIME                      WORKPLACE  USER     OPERATION  SUBJECT  VALUE  OUTCOME  NOTE"));
        QCOMPARE(all[1], text("102   2020-09-13T12:26:40.102Z  desk 1     user102  logOn      user102         done"));
        QVERIFY(all[100].startsWith(text("3     2020-09-13T12:26:40.003Z  desk 1     user3    ")));
        QCOMPARE(all[101], text("102 lines, all as they were written"));
        const Run some = run({text("audit"), project.folder(), text("--list"), text("--count"), text("2")});
        QCOMPARE(some.out.count(QLatin1Char('\n')), 4);
        tamper(project, {text("UPDATE audit_log SET hash = '' WHERE line = 50")});
        const Run bad = run({text("audit"), project.folder(), text("--list"), text("--count=2")});
        QCOMPARE(bad.exitCode, 1); // and what there is, for the eye
        QCOMPARE(bad.out.count(QLatin1Char('\n')), 3);
        QVERIFY2(bad.errors.contains(text("was changed at or before line 50")), qPrintable(bad.errors));
    }

    void theNewestLinesAreCommaSeparated()
    {
        const TestProject project;
        writeLog(project, 1);
        ScadaOperationMessage command;
        command.operation = ScadaOperationMessage::Operation::SetPoint;
        command.outcome = ScadaOperationMessage::Outcome::Done;
        command.tag = text("LEVEL");
        command.before = -40;
        command.value = 42.5;
        command.user = text("=ann");
        command.secondUser = text("bob");
        command.reason = text("\"so\", he said");
        command.time = QDateTime::fromMSecsSinceEpoch(Q_INT64_C(1600000000002), Qt::UTC);
        AuditLog log;
        QVERIFY(log.open(project.path("operating.db")));
        QVERIFY(log.append(command, text("desk 2")));
        const Run left = run({text("audit"), project.folder(), text("--csv")});
        QCOMPARE(left.exitCode, 0);
        QStringList lines = left.out.split(text("\r\n"));
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines[0], text("line,time,workplace,user,second_user,operation,subject,before,value,outcome,reason,"
                                "text,hash"));
        QVERIFY2(lines[1].startsWith(text("2,2020-09-13T12:26:40.002Z,desk 2,'=ann,bob,setPoint,LEVEL,-40,42.5,done,"
                                          "\"\"\"so\"\", he said\",,")),
                 qPrintable(lines[1]));
        QCOMPARE(lines[1].section(QLatin1Char(','), -1).size(), 64);
        QVERIFY(lines[2].startsWith(text("1,2020-09-13T12:26:40.001Z,desk 1,user1,,logOn,user1,,,done,,,")));
    }

    void aTerminalIsNotAtTheMercyOfWhatWasTyped()
    {
        const TestProject project;
        AccountEvent event;
        event.account = text("\x1b[2J\nLINE 9") + QChar(0x202E) + QString::fromUtf8("\xF0\x9F\x98\x80");
        event.text = QString(1000, QLatin1Char('x'));
        event.user = QString(1000, QLatin1Char('y'));
        AuditLog log;
        QVERIFY(log.open(project.path("operating.db")));
        QVERIFY(log.append(event, text("desk 1"), QDateTime::currentDateTimeUtc()));
        const QString out = run({text("audit"), project.folder(), text("--list")}).out;
        QCOMPARE(out.count(QLatin1Char('\n')), 3);
        QVERIFY2(out.contains(QString::fromUtf8("\uFFFD[2J\uFFFDLINE 9\uFFFD\xF0\x9F\x98\x80 ")), qPrintable(out));
        QVERIFY(out.contains(event.text));
        QVERIFY(out.contains(QString(37, QLatin1Char('y')) + text("... ")));
    }

    void changesOfAccountsAreInTheAuditLog()
    {
        const TestProject project;
        const QByteArray passwords = "open sesame\nopen sesame\n";
        const auto user = [&project](const QStringList& arguments, const QByteArray& input = {}) {
            return run(QStringList{text("user")} + arguments, project.folder(), input).exitCode;
        };
        QCOMPARE(user({text("add"), text("ann"), text("--role=administrator")}, passwords), 0);
        QCOMPARE(user({text("add"), text("bob"), text("--areas=North|South")}, passwords), 0);
        QCOMPARE(user({text("change"), text("bob"), text("--role=viewer")}), 0);
        QCOMPARE(user({text("password"), text("bob")}, passwords), 0);
        QCOMPARE(user({text("lock"), text("bob")}), 0);
        QCOMPARE(user({text("unlock"), text("bob")}), 0);
        QCOMPARE(user({text("remove"), text("bob")}), 0);
        QCOMPARE(user({text("remove"), text("bob")}), 1); // nothing was done
        const Run left = run({text("audit"), text("--csv")}, project.folder());
        QCOMPARE(left.exitCode, 0);
        QVERIFY(!left.out.contains(text("sesame")));
        QStringList lines = left.out.split(text("\r\n"), Qt::SkipEmptyParts);
        lines.removeFirst();
        QStringList told;
        for (const QString& line : qAsConst(lines)) {
            // workplace to outcome
            told.prepend(line.section(QLatin1Char(','), 2).section(text(",done,"), 0, 0));
        }
        const QString who = text("project tool,") + machineUser() + text(",,");
        QCOMPARE(told, (QStringList{who + text("addAccount,ann,,\"administrator, all areas\""),
                                    who + text("addAccount,bob,,\"operator, areas [\"\"North\"\",\"\"South\"\"]\""),
                                    who + text("changeAccount,bob,\"operator, areas [\"\"North\"\",\"\"South\"\"]\","
                                               "\"viewer, areas [\"\"North\"\",\"\"South\"\"]\""),
                                    who + text("setPassword,bob,,"), who + text("lockAccount,bob,,"),
                                    who + text("unlockAccount,bob,,"),
                                    who + text("removeAccount,bob,\"viewer, areas [\"\"North\"\",\"\"South\"\"]\",")}));
    }

    void anAccountThatCantBeAccountedForStaysAsItIs()
    {
        const TestProject project;
        project.write("operating.db", QByteArray(5000, 'x'));
        const Run left = run({text("user"), text("add"), text("ann")}, project.folder(), "open sesame\nopen sesame\n");
        QCOMPARE(left.exitCode, 1);
        QVERIFY2(left.errors.contains(text("operating.db: the audit log can't be used")), qPrintable(left.errors));
        QVERIFY2(left.errors.contains(text("; the account is as it was")), qPrintable(left.errors));
        QCOMPARE(run({text("user"), text("--list")}, project.folder()).out, QString());
    }
};

QTEST_MAIN(tst_ProjectTool)
#include "tst_projecttool.moc"
