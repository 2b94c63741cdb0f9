#include "host/design/designdocument.h"
#include "host/design/designsystem.h"
#include "tests/support/testproject.h"

#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class tst_DesignSystem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatCantBeEditedSaysWhy_data()
    {
        QTest::addColumn<QString>("file");     // of the project
        QTest::addColumn<QByteArray>("bytes"); // null for none
        QTest::addColumn<QString>("reason");   // %1 stands for the project's folder
        QTest::newRow("no settings") << text("project.json") << QByteArray()
                                     << text("%1/project.json: there is no such file, so the folder is no project");
        QTest::newRow("settings that are no JSON")
            << text("project.json") << QByteArray("{\n") << text("%1/project.json: line 2: unterminated object");
        QTest::newRow("no points") << text("points.csv") << QByteArray()
                                   << text("%1/points.csv: there is no such file");
        QTest::newRow("points without names")
            << text("points.csv") << QByteArray("id,kind\n")
            << text("%1/points.csv, line 1: the header names no column \"name\"; needed are id, name and kind");
    }
    void whatCantBeEditedSaysWhy()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        const TestProject project;
        if (bytes.isNull())
            QVERIFY(QFile::remove(project.path(file.toUtf8().constData())));
        else
            project.write(file.toUtf8().constData(), bytes);
        const auto system = DesignSystem::open(project.folder());
        QVERIFY(!system);
        QCOMPARE(system.error(), reason.replace(text("%1"), project.folder()));
    }

    void noProjectAtAll()
    {
        const TestProject project;
        const auto system = DesignSystem::open(project.path("nowhere"));
        QVERIFY(!system);
        QCOMPARE(system.error(), project.path("nowhere: there is no such project folder"));
    }

    void itKnowsThePoints()
    {
        const TestProject project;
        project.write("points.csv", "id,name,kind\n200001,FLOW,analog\n200001,OTHER,analog\n");
        {
            const auto system = DesignSystem::open(project.folder());
            QVERIFY2(system, system ? "" : qPrintable(system.error()));
            QCOMPARE((*system)->project().name, text("test plant"));
            QCOMPARE((*system)->database().count(Korvane::ScadaObjectType::Point), std::size_t(1));
            QCOMPARE((*system)->problems().size(), 1);
            QVERIFY((*system)->problems()[0].contains(text("line 3")));
            QCOMPARE(PointDirectory::registered(), static_cast<const PointDirectory*>(&(*system)->database()));
        }
        QCOMPARE(PointDirectory::registered(), nullptr);
        QVERIFY(DesignSystem::open(project.folder())); // another may follow
    }

    void aPageIsOpened()
    {
        const TestProject project;
        const auto system = DesignSystem::open(project.folder());
        const auto document = (*system)->openPage(text("plant"));
        QVERIFY2(document, document ? "" : qPrintable(document.error()));
        QCOMPARE((*document)->canvas().title(), text("Plant"));
        QCOMPARE((*document)->page().fileName, project.path("pages/plant.pws"));
        const auto other = (*system)->openPage(text("empty"));
        QVERIFY(other);
        QCOMPARE((*other)->canvas().canvasName(), text("empty"));
    }

    void whatAPageCantHoldIsItsProblem()
    {
        const TestProject project;
        project.write(
            "pages/plant.pws",
            TestProject::plantPage()
                .replace("\"Label\"", "\"Hologram\"")
                .replace("\"group\": 7", "\"actions\": [{\"type\": 2, \"targets\": [{\"tag\": \"NOWHERE\"}]}]"));
        const auto system = DesignSystem::open(project.folder());
        const auto document = (*system)->openPage(text("plant"));
        QVERIFY(document);
        QCOMPARE((*document)->page().problems.size(), 2); // told once, though there is a copy of the page
        QVERIFY((*document)->page().problems[0].contains(text("tag \"NOWHERE\" names no known object")));
        QVERIFY((*document)->page().problems[1].contains(text("unknown class \"Hologram\"")));
        QCOMPARE((*system)->problems(), QStringList());
    }

    void pagesThatCantBeOpenedSayWhy_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason"); // %1 stands for the project's folder
        QTest::newRow("no such page") << text("nowhere") << text("the project has no page \"nowhere\"");
        QTest::newRow("a path is no name")
            << text("../pages/plant") << text("the project has no page \"../pages/plant\"");
        QTest::newRow("nor is nothing") << QString() << text("the project has no page \"\"");
        QTest::newRow("no JSON") << text("broken") << text("%1/pages/broken.pws: line 2: ");
        QTest::newRow("a newer one") << text("newer")
                                     << text("%1/pages/newer.pws: is of version 2; this program reads up to "
                                             "version 1");
    }
    void pagesThatCantBeOpenedSayWhy()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        const TestProject project;
        project.write("pages/broken.pws", "{\n");
        project.write("pages/newer.pws", TestProject::json("{'format':'korvane-page','version':2}"));
        const auto system = DesignSystem::open(project.folder());
        const auto document = (*system)->openPage(name);
        QVERIFY(!document);
        QVERIFY2(document.error().startsWith(reason.replace(text("%1"), project.folder())),
                 qPrintable(document.error()));
    }

    void scriptsAreTriedWithoutARunningPlant()
    {
        const TestProject project;
        const auto system = DesignSystem::open(project.folder());
        ScriptEngine& scripts = (*system)->scripts();
        QVERIFY(scripts.limits().time == std::chrono::milliseconds(1500));
        QString out;
        connect(&scripts, &ScriptEngine::stdOut, this, [&out](const QString& text) { out += text; });
        const auto document = (*system)->openPage(text("plant"));
        scripts.runForCanvas(
            &(*document)->trialCanvas(),
            text("print(canvas.name, tags.read('FLOW'), tags.names(), pages.names(), pages.current())"));
        QCOMPARE(out, text("plant None ['FLOW', 'PUMP'] ['empty', 'plant'] None\n"));
        QCOMPARE(scripts.lastError(), QString());
        for (const char* script : {"pages.open('empty')", "pages.close()", "pages.zoom(2)"}) {
            scripts.runForCanvas(&(*document)->trialCanvas(), text(script));
            QVERIFY2(scripts.lastError().contains(text("there is no window here that shows pages")),
                     qPrintable(scripts.lastError()));
        }
    }
};

QTEST_MAIN(tst_DesignSystem)
#include "tst_designsystem.moc"
