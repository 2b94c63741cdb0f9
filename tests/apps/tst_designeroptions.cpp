#include "apps/designer/designeroptions.h"
#include "host/scripting/scripttrust.h"
#include "tests/support/ownsettings.h"
#include "tests/support/testproject.h"

#include <QImage>
#include <QProcess>
#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

tl::expected<DesignerOptions, QString> parse(const QStringList& arguments)
{
    return DesignerOptions::parse(QStringList(text("korvane-designer")) + arguments);
}

/// What a run of the program left.
struct Run
{
    int exitCode = -1;
    QString out;
    QString errors;
};

Run run(const QStringList& arguments)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(text(display));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(KORVANE_DESIGNER), arguments);
    Run left;
    if (!program.waitForFinished(60000) || program.exitStatus() != QProcess::NormalExit)
        return left;
    left.exitCode = program.exitCode();
    left.out = QString::fromUtf8(program.readAllStandardOutput());
    left.errors = QString::fromUtf8(program.readAllStandardError());
    return left;
}

} // namespace

class tst_DesignerOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aProjectIsEnough()
    {
        const auto options = parse({text("folder")});
        QVERIFY2(options, options ? "" : qPrintable(options.error()));
        QCOMPARE(options->project, text("folder"));
        QCOMPARE(options->page, QString());
        QCOMPARE(options->object, QString());
        QCOMPARE(options->screenshot, QString());
        QVERIFY(!options->areScriptsTrusted);
    }

    void everyOptionIsTaken()
    {
        const auto options = parse({text("--page"), text("overview"), text("--select=a b"), text("folder"),
                                    text("--screenshot"), text("a b.png"), text("--trust")});
        QVERIFY2(options, options ? "" : qPrintable(options.error()));
        QCOMPARE(options->project, text("folder"));
        QCOMPARE(options->page, text("overview"));
        QCOMPARE(options->object, text("a b"));
        QCOMPARE(options->screenshot, text("a b.png"));
        QVERIFY(options->areScriptsTrusted);
    }

    void badLinesAreRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        const QString one = text("name one project folder; --help tells more");
        QTest::newRow("no project") << QStringList() << one;
        QTest::newRow("two projects") << QStringList{text("a"), text("b")} << one;
        QTest::newRow("an option that there is not") << QStringList{text("a"), text("--source=x")} << text("source");
        QTest::newRow("an option without its value") << QStringList{text("a"), text("--select")} << text("select");
        QTest::newRow("a value for what has none") << QStringList{text("a"), text("--trust=1")} << text("trust");
    }
    void badLinesAreRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, reason);
        const auto options = parse(arguments);
        QVERIFY(!options);
        QVERIFY2(options.error().contains(reason), qPrintable(options.error()));
    }

    void theProgramAnswersItsQuestions()
    {
        const Run help = run({text("--help")});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.out.contains(text("Edits the pages of a project.")));
        for (const char* option : {"--page", "--select", "--screenshot", "--trust"})
            QVERIFY2(help.out.contains(text(option)), option);
        const Run version = run({text("--version")});
        QCOMPARE(version.exitCode, 0);
        QCOMPARE(version.out.trimmed(), QStringLiteral("korvane-designer " KORVANE_VERSION));
    }

    void theProgramSaysWhyItEnds_data()
    {
        QTest::addColumn<QStringList>("arguments"); // %1 stands for the project's folder
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const QStringList& arguments, int exitCode, const char* reason) {
            QTest::newRow(name) << arguments << exitCode << text("korvane-designer: ") + text(reason);
        };
        row("no project", {}, 2, "name one project folder; --help tells more");
        row("no such project", {text("/nowhere")}, 1, "/nowhere: there is no such project folder");
        row("a folder that is no project", {text("%1/pages")}, 1, "%1/pages/project.json: there is no such file");
        row("no such page", {text("%1"), text("--page=nowhere"), text("--screenshot=%1/picture.png")}, 1,
            "the project has no page \"nowhere\"");
        row("a page that can't be read", {text("%1"), text("--page=broken"), text("--screenshot=%1/picture.png")}, 1,
            "%1/pages/broken.pws: line 2: ");
        row("a picture that can't be written", {text("%1"), text("--screenshot=%1/nowhere/picture.png")}, 1,
            "%1/nowhere/picture.png: can't be written");
        row("no display to edit on", {text("%1")}, 1,
            "there is no display to edit on; --screenshot FILE draws the window off screen");
    }
    void theProgramSaysWhyItEnds()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, reason);
        const TestProject project;
        project.write("pages/broken.pws", "{\n");
        const Run left = run(arguments.replaceInStrings(text("%1"), project.folder()));
        QVERIFY2(left.errors.contains(reason.replace(text("%1"), project.folder())), qPrintable(left.errors));
        QCOMPARE(left.exitCode, exitCode);
        QVERIFY(!QFile::exists(project.path("picture.png")));
    }

    void itsWindowIsDrawn()
    {
        const TestProject project;
        const auto picture = [&project](const QStringList& more) {
            const Run left =
                run(QStringList{project.folder(), text("--screenshot"), project.path("picture.png")} + more);
            return left.exitCode == 0 ? QImage(project.path("picture.png")) : QImage();
        };
        const QImage untrusted = picture({});
        const QImage trusted = picture({text("--trust")});
        QVERIFY(!untrusted.isNull() && !trusted.isNull());
        QVERIFY(untrusted != trusted);                                                      // its bar is gone
        QVERIFY(ScriptTrust::answerFor(project.folder()) == ScriptTrust::Answer::NotAsked); // for that run alone
        QVERIFY(picture({text("--trust"), text("--select=text")}) != trusted);
        QVERIFY(picture({text("--trust"), text("--page=empty")}) != trusted);
        QVERIFY(ScriptTrust::setAnswer(project.folder(), ScriptTrust::Answer::Trusted));
        QCOMPARE(picture({}), trusted);
        QCOMPARE(project.read("pages/plant.pws"), TestProject::plantPage());
    }

    void aShapeThatThereIsNotIsTold()
    {
        const TestProject project;
        const Run left =
            run({project.folder(), text("--select=nowhere"), text("--screenshot"), project.path("picture.png")});
        QVERIFY2(left.errors.contains(text("korvane-designer: the page has no shape \"nowhere\"\n")),
                 qPrintable(left.errors));
        QCOMPARE(left.exitCode, 0);
        QVERIFY(!QImage(project.path("picture.png")).isNull());
    }

    void problemsOfThePointsAreTold()
    {
        const TestProject project;
        project.write("points.csv", "id,name,kind\n200001,FLOW,sideways\n");
        const Run left = run({project.folder(), text("--screenshot"), project.path("picture.png")});
        QVERIFY2(left.errors.contains(text("line 2, column 3 (kind), object \"FLOW\"")), qPrintable(left.errors));
        QCOMPARE(left.exitCode, 0);
    }

private:
    OwnSettings m_settings;
};

QTEST_GUILESS_MAIN(tst_DesignerOptions)
#include "tst_designeroptions.moc"
