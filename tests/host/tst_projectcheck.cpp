#include "host/checking/projectcheck.h"
#include "host/core/project.h"
#include "host/runtime/pointlist.h"
#include "tests/support/testproject.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QString lineOf(const Finding& finding)
{
    return QStringLiteral("%1 %2 %3:%4 \"%5\"")
        .arg(finding.severity == Finding::Severity::Error ? text("error") : text("warning"), finding.code, finding.file)
        .arg(finding.line)
        .arg(finding.object);
}

QStringList linesOf(const std::vector<Finding>& findings)
{
    QStringList lines;
    for (const Finding& finding : findings)
        lines.append(lineOf(finding));
    return lines;
}

/// A page whose fourth line begins the shape "one" with those members.
QByteArray shape(const QByteArray& members, const QByteArray& page = {})
{
    return TestProject::json("{'format': 'korvane-page', 'version': 1," + page +
                             "\n 'layers': [{'name': 'a', 'shapes': [\n"
                             "  {'class': 'Label', 'place': [0, 0, 9, 9]},\n"
                             "  {'class': 'Label', 'name': 'one', 'place': [0, 0, 9, 9],\n" +
                             members + "}]}]}\n");
}

QByteArray emptyPage()
{
    return TestProject::json("{'format': 'korvane-page', 'version': 1, 'layers': []}");
}

/// The project with the page, and FLOW (analog) and PUMP (digital) as points.
QStringList check(const QByteArray& page)
{
    const TestProject project;
    project.write("pages/plant.pws", page);
    return linesOf(ProjectCheck::run(project.folder()));
}

} // namespace

class tst_ProjectCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrongOnAPageIsFound_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QStringList>("found");
        const auto row = [](const char* name, const QByteArray& page, const QStringList& found) {
            QTest::newRow(name) << page << found;
        };
        const auto one = [](const char* what, int line) {
            return QStringList{QStringLiteral("%1 pages/plant.pws:%2 \"one\"").arg(text(what)).arg(line)};
        };
        row("nothing",
            shape("'actions': [{'type': 2, 'targets': [{'tag': 'FLOW:HighLimit'}, {'tag': '5'}, {'tag': '@::x'}]}]"),
            {});
        row("an unknown tag", shape("'actions': [{'type': 2, 'targets': [{'tag': 'FLOW'},\n {'tag': 'FLOWS'}]}]"),
            one("error unknown-tag", 6));
        row("a field that the kind lacks", shape("'actions': [{'type': 2, 'targets': [{'tag': 'PUMP:HighLimit'}]}]"),
            one("error missing-field", 5));
        row("a field that there is not", shape("'actions': [{'type': 2, 'targets': [{'tag': 'FLOW:Height'}]}]"),
            one("error missing-field", 5));
        row("an unknown tag in a condition",
            shape("'actions': [{'type': 4, 'rules': [{'when': [{'tag': 'FLOW', 'operator': '<', 'bound': '1'}]},\n"
                  " {'when': [{'tag': 'X', 'operator': '<', 'bound': '1'}]}]}]"),
            one("error unknown-tag", 6));
        row("an unknown bound",
            shape("'actions': [{'type': 4, 'rules': [{'when': [{'tag': 'FLOW', 'operator': '<',\n 'bound': 'X'}]}]}]"),
            one("error unknown-tag", 6));
        row("conditions that contradict each other",
            shape("'actions': [{'type': 1},\n {'type': 4, 'rules': [{'when': [{'tag': 'FLOW', 'operator': '<', "
                  "'bound': '1', "
                  "'link': '&&'},\n {'tag': 'FLOW', 'operator': '>', 'bound': '2'}]}]}]"),
            one("error never-holds", 6));
        row("a rule behind a weaker one",
            shape("'actions': [{'type': 4, 'rules': [{'when': [{'tag': 'FLOW', 'operator': '<', 'bound': '3'}]},\n"
                  "{'when': [{'tag': 'FLOW', 'operator': '<', 'bound': '2'}]}]}]"),
            one("error unreachable-rule", 6));
        row("a command to an unknown object", shape("'operation': {'kind': 'raise', 'tag': 'X'}"),
            one("error unknown-tag", 5));
        row("a command to what takes none", shape("'operation': {'kind': 'raise', 'tag': 'FLOW'}"),
            one("error not-controllable", 5));
        row("a script that does not compile",
            shape("'events': [{'trigger': 1, 'type': 1001, 'script': [\n'x = 1',\n'if x',\n'']}]"),
            one("error script-syntax", 7));
        row("a script that would do harm if it ran",
            shape(
                "'events': [{'trigger': 13, 'type': 1001, 'script': ['raise SystemExit', 'import os', 'os.abort()']}]"),
            {});
        row("an unknown tag of a script",
            shape("'events': [{'trigger': 1, 'type': 1001, 'script': "
                  "[\n'tags.read(\\\"FLOW\\\")',\n'tags.is_good(\\\"X\\\")',"
                  "\n'print(\\\"X\\\")']}]"),
            one("error unknown-tag", 7));
        row("a field of a script",
            shape("'events': [{'trigger': 1, 'type': 1001, 'script': ['tags.read(\\\"PUMP:HighLimit\\\")']}]"),
            one("error missing-field", 5));
        row("a page that a script opens",
            shape("'events': [{'trigger': 1, 'type': 1001, 'script': ['pages.open(\\\"plant\\\")', "
                  "'pages.open(\\\"x\\\")']}]"),
            one("error unknown-page", 5));
        row("a script that sends commands",
            shape("'events': [{'trigger': 1, 'type': 1001, 'script': ['',\n'control.operate(\\\"PUMP\\\", 1)']}]"),
            one("warning script-control", 6));
        row("what the reader can't load", shape("'properties': {'Text': 5},\n'actions': [{'type': 77}]"),
            {text("error page-problem pages/plant.pws:5 \"one\""),
             text("error page-problem pages/plant.pws:6 \"one\"")});
        row("no page", "{}", {text("error unreadable-page pages/plant.pws:0 \"\"")});
        row("no JSON", "{", {text("error unreadable-page pages/plant.pws:0 \"\"")});
    }
    void whatIsWrongOnAPageIsFound()
    {
        QFETCH(const QByteArray, page);
        QFETCH(const QStringList, found);
        QCOMPARE(check(page).join(QLatin1Char('\n')), found.join(QLatin1Char('\n')));
    }

    void aRecordAloneIsChecked()
    {
        const auto page = [](const char* record) {
            return shape("'actions': [{'type': 2, 'version': 911,\n 'targets': [{'record': '" + QByteArray(record) +
                         "'}]}]");
        };
        // Kind 6, id 0, "X", no field.
        QCOMPARE(check(page("AAAABgAAAAAAAAACAFgAAA==")),
                 QStringList(text("error unknown-tag pages/plant.pws:6 \"one\"")));
    }

    void whatIsWrongWithTheListIsFound()
    {
        const TestProject project;
        project.write("pages/plant.pws", emptyPage());
        project.write("points.csv",
                      "id,name,kind\n200001,FLOW,analog\n200002,\"A: B\",digital\n100001,PUMP,digital,,\n");
        const QStringList wanted = {text("error point-list points.csv:3 \"A: B\""),
                                    text("error point-list points.csv:4 \"PUMP\"")};
        QCOMPARE(linesOf(ProjectCheck::run(project.folder())), wanted);
        QFile::remove(project.path("points.csv"));
        QCOMPARE(linesOf(ProjectCheck::run(project.folder())),
                 QStringList(text("error unreadable-points points.csv:0 \"\"")));
    }

    void whatIsWrongWithTheProjectIsFound()
    {
        const TestProject project;
        project.write("pages/plant.pws", emptyPage());
        project.write("project.json", "{\"version\": 1, \"startPage\": \"x\"}");
        QCOMPARE(linesOf(ProjectCheck::run(project.folder())),
                 QStringList(text("error unknown-page project.json:0 \"\"")));
        project.write("project.json", "{\"version\": \"x\"}");
        QCOMPARE(linesOf(ProjectCheck::run(project.folder())),
                 QStringList(text("error unreadable-project project.json:0 \"\"")));
    }

    void objectsThatNameOthersAreChecked()
    {
        const TestProject project;
        QFile::remove(project.path("pages/empty.pws"));
        project.write("pages/plant.pws", emptyPage());
        project.write("points.csv", "id,name,kind\n200001,A,analog\n1,U,unit\n1,L,line\n200002,B,analog\n");
        RuntimeDatabase database;
        const auto list = PointList::read(project.path("points.csv"));
        QVERIFY(list);
        auto objects = list->objects;
        objects[0].parent = text("U");
        objects[0].control.kind = ControlSetting::Kind::Direct;
        objects[0].control.feedback = text("B");
        objects[0].control.interlock = text("B > 1 and NONE == 1");
        objects[1].parent = text("U");
        objects[3].parent = text("L");
        objects[3].control.kind = ControlSetting::Kind::Direct;
        objects[3].control.feedback = text("NONE");
        for (const auto& object : objects)
            QVERIFY(database.add(object));
        const QStringList wanted = {
            text("error unknown-reference points.csv:2 \"A\""), // the interlock's second tag
            text("error unknown-reference points.csv:3 \"U\""), // units belong to lines
            text("error unknown-reference points.csv:5 \"B\""), // points belong to units
            text("error unknown-reference points.csv:5 \"B\""), // the feedback
            text("warning unguarded points.csv:5 \"B\""),
        };
        QCOMPARE(linesOf(ProjectCheck::run(*Project::read(project.folder()), database)), wanted);
    }

    void rightsOfAccountsThatThereAreNotAreTold()
    {
        const TestProject project;
        project.write("pages/plant.pws", shape("'properties': {}", " 'access': {'protected': true, 'users': [7, 8]},"));
        QCOMPARE(linesOf(ProjectCheck::run(project.folder())), QStringList());
        {
            QSqlDatabase accounts = QSqlDatabase::addDatabase(text("QSQLITE"), text("accounts"));
            accounts.setDatabaseName(project.path("accounts.db"));
            QVERIFY(accounts.open());
            QSqlQuery query(accounts);
            QVERIFY(query.exec(text("CREATE TABLE SYSTEM_USER_ACCOUNT (NUMBER INTEGER, NAME TEXT)")));
            QVERIFY(query.exec(text("INSERT INTO SYSTEM_USER_ACCOUNT VALUES (7, 'a')")));
        }
        QSqlDatabase::removeDatabase(text("accounts"));
        const auto findings = ProjectCheck::run(project.folder());
        QCOMPARE(linesOf(findings), QStringList(text("warning unknown-account pages/plant.pws:0 \"\"")));
        QVERIFY(findings.front().text.contains(text("account 8")));
    }
};

QTEST_MAIN(tst_ProjectCheck)
#include "tst_projectcheck.moc"
