// Finding and renaming an object in all files of a project.

#include "host/canvas/pagewriter.h"
#include "host/core/project.h"
#include "host/projectfiles/filechanges.h"
#include "host/projectfiles/objectrenamer.h"
#include "host/projectfiles/taguses.h"
#include "host/runtime/pointlist.h"
#include "platform/data/tagresolution.h"
#include "scada/binding/objecttarget.h"
#include "tests/support/testproject.h"

#include <QDataStream>
#include <QtTest>

#include <memory>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QByteArray record(const char* tag)
{
    return ObjectTarget::fromTagString(text(tag)).makeByteStream().toBase64();
}

/// A project with a unit and a line that have the point's name, and points of similar names.
struct Plant
{
    explicit Plant(const QByteArray& more = {}, const QByteArray& header = {})
    {
        const QByteArray rest = QByteArray(header.count(','), ',') + '\n';
        files.write("points.csv", "# P1 and others\nid,name,kind" + header + "\n200001,P1,analog" + rest +
                                      "200010,P10,analog" + rest + "1,P1,unit" + rest + "1,P1,line" + rest + more);
        QFile::remove(files.path("pages/empty.pws"));
    }
    void page(const QByteArray& json) const { files.write("pages/plant.pws", json); }
    /// A page with one shape that has those members.
    static QByteArray shape(const QByteArray& members)
    {
        return TestProject::json("{'format': 'korvane-page', 'version': 1,\n 'layers': [{'name': 'a', 'shapes': [\n"
                                 "  {'class': 'Label', 'name': 'one', 'place': [0, 0, 9, 9],\n" +
                                 members + "}]}]}\n");
    }
    void open()
    {
        const auto read = Project::read(files.folder());
        if (!read)
            qFatal("%s", qPrintable(read.error()));
        project = *read;
        database = std::make_unique<RuntimeDatabase>();
        const auto loaded = PointList::load(project.pointFile(), *database);
        if (!loaded)
            qFatal("%s", qPrintable(loaded.error()));
    }
    ObjectRenamer::Result rename(const char* before, const char* after)
    {
        open();
        const auto asked = ObjectRenamer::ask(*database, text(before), text(after));
        if (!asked)
            qFatal("%s", qPrintable(asked.error()));
        const auto changes = FileChanges::begin(files.folder());
        const auto result = ObjectRenamer::run(project, *asked, changes->get());
        if (!result || !(*changes)->commit(text("rename")))
            qFatal("%s", result ? "not committed" : qPrintable(result.error()));
        return *result;
    }
    QByteArray page() const { return files.read("pages/plant.pws"); }
    QByteArray list() const { return files.read("points.csv"); }
    QStringList uses(const char* tag)
    {
        open();
        const Korvane::DataLinkInfo link = Korvane::resolveFromString(text(tag), database.get());
        QStringList found;
        for (const TagUse& use : TagUse::of(project, *database, {link.type, link.id}).uses)
            found.append(
                QStringLiteral("%1:%2 %3 %4 %5").arg(use.file).arg(use.line).arg(use.shape, use.what, use.tag));
        return found;
    }

    TestProject files;
    Project project;
    std::unique_ptr<RuntimeDatabase> database;
};

} // namespace

class tst_ObjectRenamer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pagesAreRenamedInAndOtherwiseStay_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char* name, const QByteArray& before, const QByteArray& after) {
            QTest::newRow(name) << Plant::shape(before) << Plant::shape(after);
        };
        const auto same = [&row](const char* name, const QByteArray& members) { row(name, members, members); };
        row("a binding without a record", "'actions': [{'type': 2,  'targets': [{ 'tag':'P1:HighLimit' }]}]",
            "'actions': [{'type': 2,  'targets': [{ 'tag':'Q \\\"1\\\":HighLimit' }]}]");
        row("a binding and its record",
            "'actions': [{'type': 2, 'targets': [{'record': '" + record("P1") + "', 'tag': 'P1'}]}]",
            "'actions': [{'type': 2, 'targets': [{'record': '" + record("Q \"1\"") + "', 'tag': 'Q \\\"1\\\"'}]}]");
        row("a record alone", "'actions': [{'type': 2, 'targets': [{'record': '" + record("P1") + "'}]}]",
            "'actions': [{'type': 2, 'targets': [{'record': '" + record("Q \"1\"") + "'}]}]");
        row("a tag that is written in escapes", "'actions': [{'type': 2, 'targets': [{'tag': '\\u00501'}]}]",
            "'actions': [{'type': 2, 'targets': [{'tag': 'Q \\\"1\\\"'}]}]");
        same("a longer name",
             "'actions': [{'type': 2, 'targets': [{'tag': 'P10', 'record': '" + record("P10") + "'}]}]");
        same("a unit",
             "'actions': [{'type': 2, 'targets': [{'tag': '@R::P1', 'record': '" + record("@R::P1") + "'}]}]");
        same("a text of a shape", "'properties': {'Text': 'P1'}");
        row("a condition's sides",
            "'actions': [{'type': 4, 'rules': [{'when': [{'tag': 'P1', 'operator': '<', 'bound': 'P1:LowLimit'}], "
            "'set': {}}]}]",
            "'actions': [{'type': 4, 'rules': [{'when': [{'tag': 'Q \\\"1\\\"', 'operator': '<', 'bound': "
            "'Q \\\"1\\\":LowLimit'}], 'set': {}}]}]");
        row("an operation", "'operation': {'kind': 'setpoint', 'tag': 'P1'}",
            "'operation': {'kind': 'setpoint', 'tag': 'Q \\\"1\\\"'}");
        same("a choice of that name", "'operation': {'kind': 'setpoint', 'tag': 'P10', 'input': {'P1': 1}}");
        row("a tag of a part that nobody knows", "'newer': [{'deep': {'tag': 'P1'}}]",
            "'newer': [{'deep': {'tag': 'Q \\\"1\\\"'}}]");
        row("strings of scripts", R"('events': [{'trigger': 13, 'type': 1001, 'script': ['x = tags.read(\"P1\") # P1',
             'y = [\"P1:Value\", \"P10\", \"P1\"]', '\ty = P1']}])",
            R"('events': [{'trigger': 13, 'type': 1001, 'script': ['x = tags.read(\"Q \\\"1\\\"\") # P1',
             'y = [\"Q \\\"1\\\":Value\", \"P10\", \"Q \\\"1\\\"\"]', '\ty = P1']}])");
    }
    void pagesAreRenamedInAndOtherwiseStay()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const QByteArray, after);
        Plant plant;
        plant.page(before);
        plant.rename("P1", "Q \"1\"");
        QCOMPARE(plant.page(), after);
        QVERIFY(FileChanges::undo(plant.files.folder()));
        QCOMPARE(plant.page(), before);
    }

    void aScriptInBase64IsRenamedIn()
    {
        const auto stored = [](const char* script) {
            QByteArray data;
            QDataStream out(&data, QIODevice::WriteOnly);
            out << text(script);
            return Plant::shape("'events': [{'trigger': 13, 'type': 1001, 'data': '" + data.toBase64() + "'}]");
        };
        Plant plant;
        plant.page(stored("a('P1')\nb('P1', 'P10')"));
        const auto result = plant.rename("P1", "LONGER");
        QCOMPARE(plant.page(), stored("a('LONGER')\nb('LONGER', 'P10')"));
        QCOMPARE(int(result.changes.size()), 3);
    }

    void aScriptOfManyLinesIsRenamedInEachOfThem()
    {
        const auto stored = [](const char* script) {
            return Plant::shape("'events': [{'trigger': 13, 'type': 1001, 'script': '" + QByteArray(script) + "'}]");
        };
        Plant plant;
        plant.page(stored("a(\\\"P1\\\")\\nb(\\\"P1\\\") \\nc(r\\\"P1\\\")"));
        plant.rename("P1", "LONGER");
        QCOMPARE(plant.page(), stored("a(\\\"LONGER\\\")\\nb(\\\"LONGER\\\") \\nc(r\\\"LONGER\\\")"));
    }

    void textsWithTheNameInThemAreTold()
    {
        Plant plant;
        plant.page(
            Plant::shape("'events': [{'trigger': 13, 'type': 1001, 'script': 'a(\\\"P1, P2\\\", \\\"P10\\\")'}]"));
        const QByteArray before = plant.page();
        const auto result = plant.rename("P1", "Q");
        QCOMPARE(plant.page(), before);
        QCOMPARE(result.notes, QStringList(text("pages/plant.pws:4: \"P1, P2\" is no tag by itself and stays")));
    }

    void theListIsRenamedInAndOtherwiseStays()
    {
        Plant plant("200020, X ,analog,\"P1\",\"P1 > 5 and \"\"P1:HighLimit\"\"<P10\",P1\n2,U,unit,,,P1\n",
                    ",feedback,interlock,parent");
        QByteArray list =
            plant.list().replace("P1,analog\n", "P1,analog,,,\n").replace("P10,analog\n", "P10,analog,,,\n");
        list.replace("P1,unit\n", "P1,unit,,,\n").replace("P1,line\n", "P1,line,,,\n");
        plant.files.write("points.csv", list);
        plant.rename("P1", "a;b c");
        QByteArray wanted = list;
        wanted.replace("200001,P1", "200001,a;b c").replace(",\"P1\",", ",a;b c,");
        wanted.replace("\"P1 > 5 and \"\"P1:HighLimit\"\"<P10\"",
                       "\"\"\"a;b c\"\" > 5 and \"\"a;b c:HighLimit\"\"<P10\"");
        QCOMPARE(plant.list(), wanted);
    }

    void unitsAndLinesAreParents()
    {
        Plant plant("200020,X,analog,P1\n2,U,unit,P1\n", ",parent");
        const QByteArray list = plant.list();
        plant.rename("@R::P1", "@R::RTU");
        QByteArray wanted = list;
        wanted.replace("1,P1,unit", "1,RTU,unit").replace("X,analog,P1", "X,analog,RTU");
        QCOMPARE(plant.list(), wanted);
        plant.rename("@C::P1", "COM");
        wanted.replace("1,P1,line", "1,COM,line").replace("U,unit,P1", "U,unit,COM");
        QCOMPARE(plant.list(), wanted);
    }

    void aColumnGoesOnFeedingTheObject_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("recording");
        QTest::addColumn<QByteArray>("list");
        const QByteArray head = "# P1 and others\nid,name,kind";
        const QByteArray plain = head + "\n200001,Q,analog\n200010,P10,analog\n1,P1,unit\n1,P1,line\n";
        const QByteArray addressed =
            head + ",address\n200001,Q,analog,P1\n200010,P10,analog,\n1,P1,unit,\n1,P1,line,\n";
        QTest::newRow("a column of the name") << QByteArray("recording:r.csv") << QByteArray("time;P1\n") << addressed;
        QTest::newRow("a column of a longer name")
            << QByteArray("recording:r.csv") << QByteArray("time;P10\n") << plain;
        QTest::newRow("rows that name points")
            << QByteArray("recording:r.csv") << QByteArray("time;name;value\n") << addressed;
        QTest::newRow("standard input") << QByteArray("recording:-") << QByteArray() << addressed;
        QTest::newRow("the simulation") << QByteArray("simulation") << QByteArray("time;P1\n") << plain;
        QTest::newRow("a map") << QByteArray("recording:r.csv?map=m.csv") << QByteArray("time;P1\n") << plain;
    }
    void aColumnGoesOnFeedingTheObject()
    {
        QFETCH(const QByteArray, source);
        QFETCH(const QByteArray, recording);
        QFETCH(const QByteArray, list);
        Plant plant;
        plant.files.write("project.json", "{\"version\":1,\"startPage\":\"plant\",\"source\":\"" + source + "\"}");
        plant.files.write("r.csv", recording);
        plant.files.write("m.csv", "column;point\nP1;P1\nx; P1 ;2\ny;P10\n");
        plant.rename("P1", "Q");
        QCOMPARE(plant.list(), list);
        const bool hasMap = source.contains("map");
        QCOMPARE(plant.files.read("m.csv"), hasMap ? QByteArray("column;point\nP1;Q\nx; Q ;2\ny;P10\n")
                                                   : QByteArray("column;point\nP1;P1\nx; P1 ;2\ny;P10\n"));
    }

    void aPreviewChangesNothing()
    {
        Plant plant;
        plant.page(Plant::shape("'operation': {'kind': 'setpoint', 'tag': 'P1'}"));
        const QByteArray page = plant.page();
        const QByteArray list = plant.list();
        plant.open();
        const auto result =
            ObjectRenamer::run(plant.project, *ObjectRenamer::ask(*plant.database, text("P1"), text("Q")), nullptr);
        QVERIFY(result);
        QCOMPARE(int(result->changes.size()), 2);
        QCOMPARE(result->changes[1].file, text("pages/plant.pws"));
        QCOMPARE(result->changes[1].line, 4);
        QCOMPARE(result->changes[1].what, text("operation"));
        QCOMPARE(plant.page(), page);
        QCOMPARE(plant.list(), list);
    }

    void whatCantBeIsRefused_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("reason");
        QTest::newRow("an unknown object") << text("P2") << text("Q") << text("names no object");
        QTest::newRow("a field") << text("P1:HighLimit") << text("Q") << text("names a field");
        QTest::newRow("a constant") << text("12") << text("Q") << text("names no object");
        QTest::newRow("a name that is taken") << text("P1") << text("P10") << text("is taken");
        QTest::newRow("its own name") << text("P1") << text("P1") << text("is taken");
        QTest::newRow("a number") << text("P1") << text("12") << text("no tag could reach");
        QTest::newRow("a field behind it") << text("P1") << text("Q:HighLimit") << text("no tag could reach");
        QTest::newRow("a unit's prefix for a point") << text("P1") << text("@R::Q") << text("no tag could reach");
        QTest::newRow("no name") << text("P1") << QString() << text("no tag could reach");
    }
    void whatCantBeIsRefused()
    {
        QFETCH(const QString, before);
        QFETCH(const QString, after);
        QFETCH(const QString, reason);
        Plant plant;
        plant.open();
        const auto asked = ObjectRenamer::ask(*plant.database, before, after);
        QVERIFY(!asked);
        QVERIFY2(asked.error().contains(reason), qPrintable(asked.error()));
    }

    void aPageThatCantBeReadStopsAll()
    {
        Plant plant;
        plant.page("{\n\"layers\": [\n");
        plant.open();
        const auto result =
            ObjectRenamer::run(plant.project, *ObjectRenamer::ask(*plant.database, text("P1"), text("Q")), nullptr);
        QVERIFY(!result);
        QVERIFY2(result.error().startsWith(text("pages/plant.pws: line 3: ")), qPrintable(result.error()));
    }

    void usesAreFoundByNameAndId()
    {
        Plant plant("200020,X,analog,P1,P1 > 1 and P10 > 1\n", ",feedback,interlock");
        plant.page(
            Plant::shape("'actions': [{'type': 2, 'targets': [\n{'tag': '#200001:HighLimit'},\n{'tag': 'P10'},\n"
                         "{'record': '" +
                         record("P1") +
                         "'}], 'rules': [{'when': [\n{'tag': 'P10', 'bound': 'P1', "
                         "'operator': '<'}]}]}],\n'operation': {'kind': 'raise', 'tag': 'P1'},\n"
                         "'events': [{'trigger': 1, 'type': 1001, 'script': [\n'',\n'a(\\\"P1\\\", \\\"P1/x\\\")']}]"));
        const QStringList wanted = {
            text("points.csv:3 P1 object P1"),          text("points.csv:7 X feedback P1"),
            text("points.csv:7 X interlock P1"),        text("pages/plant.pws:5 one binding #200001:HighLimit"),
            text("pages/plant.pws:7 one binding P1"),   text("pages/plant.pws:8 one bound P1"),
            text("pages/plant.pws:9 one operation P1"), text("pages/plant.pws:12 one script P1"),
            text("pages/plant.pws:12 one text P1/x"),
        };
        QCOMPARE(plant.uses("P1"), wanted);
    }
};

QTEST_GUILESS_MAIN(tst_ObjectRenamer)
#include "tst_objectrenamer.moc"
