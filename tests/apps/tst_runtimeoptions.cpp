#include "apps/runtime/runtimeoptions.h"
#include "host/scripting/scripttrust.h"
#include "tests/support/ownsettings.h"
#include "tests/support/temporaryfiles.h"
#include "tests/support/testproject.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QtTest>

using std::chrono::milliseconds;

namespace {

const QString demo = QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop");
const QString loop = QStringLiteral("recording:" KORVANE_SOURCE_DIR "/demo/water-loop/recordings/loop.csv?speed=100");

tl::expected<RuntimeOptions, QString> parse(const QStringList& arguments)
{
    return RuntimeOptions::parse(QStringList(QStringLiteral("korvane-runtime")) + arguments);
}

/// What a run of the program left.
struct Run
{
    int exitCode = -1;
    QString out;
    QString errors;
};

Run run(const QStringList& arguments, bool hasDisplay = false)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    if (hasDisplay)
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    else
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(KORVANE_RUNTIME), arguments);
    Run left;
    if (!program.waitForFinished(60'000) || program.exitStatus() != QProcess::NormalExit)
        return left;
    left.exitCode = program.exitCode();
    left.out = QString::fromUtf8(program.readAllStandardOutput());
    left.errors = QString::fromUtf8(program.readAllStandardError());
    return left;
}

/// The line that begins so; empty without one.
QString lineOf(const QString& text, const QString& beginning)
{
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        if (line.startsWith(beginning))
            return line;
    }
    return {};
}

} // namespace

class tst_RuntimeOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aProjectIsEnough()
    {
        const auto options = parse({QStringLiteral("folder")});
        QVERIFY2(options, options ? "" : qPrintable(options.error()));
        QCOMPARE(options->project, QStringLiteral("folder"));
        QCOMPARE(options->page, QString());
        QCOMPARE(options->screenshot, QString());
        QCOMPARE(options->source, QString());
        QCOMPARE(options->record, QString());
        QVERIFY(!options->after);
        QCOMPARE(options->zoom, 1.0);
        QVERIFY(options->isStored);
        QVERIFY(!options->areScriptsTrusted);
    }

    void everyOptionIsTaken()
    {
        const auto options =
            parse({QStringLiteral("--page"), QStringLiteral("overview"), QStringLiteral("--screenshot=a b.png"),
                   QStringLiteral("--after"), QStringLiteral("10s"), QStringLiteral("--source"),
                   QStringLiteral("simulation?seed=3"), QStringLiteral("folder"), QStringLiteral("--record"),
                   QStringLiteral("made.csv"), QStringLiteral("--zoom"), QStringLiteral("0.5"),
                   QStringLiteral("--no-store"), QStringLiteral("--silent"), QStringLiteral("--trust")});
        QVERIFY2(options, options ? "" : qPrintable(options.error()));
        QCOMPARE(options->project, QStringLiteral("folder"));
        QCOMPARE(options->page, QStringLiteral("overview"));
        QCOMPARE(options->screenshot, QStringLiteral("a b.png"));
        QCOMPARE(options->source, QStringLiteral("simulation?seed=3"));
        QCOMPARE(options->record, QStringLiteral("made.csv"));
        QVERIFY(options->after == milliseconds(10'000));
        QCOMPARE(options->zoom, 0.5);
        QVERIFY(!options->isStored);
        QVERIFY(options->isSilent);
        QVERIFY(options->areScriptsTrusted);
    }

    void durations_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("ms"); // -1 for none
        const auto row = [](const char* name, const char* text, qint64 ms) {
            QTest::newRow(name) << QString::fromLatin1(text) << ms;
        };
        row("seconds", "10s", 10'000);
        row("milliseconds", "500ms", 500);
        row("minutes", "2min", 120'000);
        row("hours", "1h", 3'600'000);
        row("a number alone is seconds", "10", 10'000);
        row("fractions", "0.25s", 250);
        row("fractions of minutes", "1.5min", 90'000);
        row("none at all is a duration", "0", 0);
        row("eleven thousand days", "270000h", 972'000'000'000);
        row("longer than thirty years is none", "300000h", -1);
        row("nothing is none", "", -1);
        row("a unit alone is none", "s", -1);
        row("a negative one is none", "-1s", -1);
        row("a unit that is not known", "10m", -1);
        row("a unit in capitals", "10S", -1);
        row("two numbers", "1 2s", -1);
        row("what is no number", "nan", -1);
        row("an infinity", "inf", -1);
        row("an infinity with a unit", "infs", -1);
    }
    void durations()
    {
        QFETCH(QString, text);
        QFETCH(qint64, ms);
        const auto options = parse({QStringLiteral("folder"), QStringLiteral("--after=") + text});
        if (ms < 0) {
            QVERIFY(!options);
            QCOMPARE(options.error(), QStringLiteral("--after %1: no duration, as 10s, 500ms or 2min").arg(text));
        } else {
            QVERIFY2(options, options ? "" : qPrintable(options.error()));
            QCOMPARE(qint64(options->after->count()), ms);
        }
    }

    void zooms_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("zoom"); // 0 for none
        QTest::newRow("the smallest") << QStringLiteral("0.1") << 0.1;
        QTest::newRow("the largest") << QStringLiteral("8") << 8.0;
        QTest::newRow("below the smallest") << QStringLiteral("0.09") << 0.0;
        QTest::newRow("above the largest") << QStringLiteral("8.01") << 0.0;
        QTest::newRow("negative") << QStringLiteral("-1") << 0.0;
        QTest::newRow("no number") << QStringLiteral("big") << 0.0;
        QTest::newRow("NaN") << QStringLiteral("nan") << 0.0;
        QTest::newRow("nothing") << QString() << 0.0;
    }
    void zooms()
    {
        QFETCH(QString, text);
        QFETCH(double, zoom);
        const auto options = parse({QStringLiteral("folder"), QStringLiteral("--zoom=") + text});
        if (zoom == 0) {
            QVERIFY(!options);
            QCOMPARE(options.error(), QStringLiteral("--zoom: a factor from 0.1 to 8"));
        } else {
            QVERIFY2(options, options ? "" : qPrintable(options.error()));
            QCOMPARE(options->zoom, zoom);
        }
    }

    void badLinesAreRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        const QString one = QStringLiteral("name one project folder; --help tells more");
        QTest::newRow("no project") << QStringList() << one;
        QTest::newRow("two projects") << QStringList{QStringLiteral("a"), QStringLiteral("b")} << one;
        QTest::newRow("a record of no duration")
            << QStringList{QStringLiteral("a"), QStringLiteral("--record"), QStringLiteral("made.csv")}
            << QStringLiteral("--record needs --after: how much to record");
    }
    void badLinesAreRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, reason);
        const auto options = parse(arguments);
        QVERIFY(!options);
        QCOMPARE(options.error(), reason);
    }

    void theProgramAnswersItsQuestions()
    {
        const Run help = run({QStringLiteral("--help")});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.out.contains(QStringLiteral("Shows the pages of a project with live values.")));
        for (const char* option : {"--page", "--screenshot", "--after", "--source", "--record", "--zoom", "--no-store",
                                   "--silent", "--trust"})
            QVERIFY2(help.out.contains(QLatin1String(option)), option);
        const Run version = run({QStringLiteral("--version")});
        QCOMPARE(version.exitCode, 0);
        QCOMPARE(version.out.trimmed(), QStringLiteral("korvane-runtime " KORVANE_VERSION));
    }

    void theProgramSaysWhyItEnds_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const QStringList& arguments, int exitCode, const QString& reason) {
            QTest::newRow(name) << arguments << exitCode << reason;
        };
        const QString after = QStringLiteral("--after=0");
        row("no project", {}, 2, QStringLiteral("korvane-runtime: name one project folder; --help tells more"));
        row("a duration that is none", {demo, QStringLiteral("--after=soon")}, 2,
            QStringLiteral("korvane-runtime: --after soon: no duration, as 10s, 500ms or 2min"));
        row("an option that there is not", {demo, QStringLiteral("--nonsense")}, 2, QStringLiteral("nonsense"));
        row("an option without its value", {demo, QStringLiteral("--page")}, 2, QStringLiteral("page"));
        row("no such project", {QStringLiteral("/nowhere"), after}, 1,
            QStringLiteral("korvane-runtime: /nowhere: there is no such project folder"));
        row("no such page", {demo, after, QStringLiteral("--no-store"), QStringLiteral("--page=nowhere")}, 1,
            QStringLiteral("korvane-runtime: %1/pages/nowhere.pws: there is no such page").arg(demo));
        row("no such recording", {demo, after, QStringLiteral("--source=recording:/nowhere.csv")}, 1,
            QStringLiteral("korvane-runtime: /nowhere.csv: there is no such recording"));
        row("no such kind of source", {demo, after, QStringLiteral("--source=telepathy")}, 1,
            QStringLiteral("korvane-runtime: source \"telepathy\": "));
        row("a record that can't be written",
            {demo, QStringLiteral("--after=1s"), QStringLiteral("--record=/nowhere/made.csv")}, 1,
            QStringLiteral("korvane-runtime: /nowhere/made.csv"));
        row("a picture that can't be written",
            {demo, after, QStringLiteral("--no-store"), QStringLiteral("--screenshot=/nowhere/picture.png")}, 1,
            QStringLiteral("/nowhere/picture.png: can't be written"));
    }
    void theProgramSaysWhyItEnds()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, reason);
        const Run left = run(arguments);
        QVERIFY2(left.errors.contains(reason), qPrintable(left.errors));
        QCOMPARE(left.exitCode, exitCode);
    }

    void withoutADisplayItPrintsAndDraws_data()
    {
        QTest::addColumn<QString>("zoom");
        QTest::addColumn<QSize>("size");
        QTest::newRow("in the page's own size") << QStringLiteral("1") << QSize(1600, 900);
        QTest::newRow("at half of it") << QStringLiteral("0.5") << QSize(800, 450);
    }
    void withoutADisplayItPrintsAndDraws()
    {
        QFETCH(QString, zoom);
        QFETCH(QSize, size);
        const TemporaryFiles files;
        const QString picture = files.path(QStringLiteral("picture.png"));
        const Run left =
            run({demo, QStringLiteral("--source"), loop, QStringLiteral("--after=1s"), QStringLiteral("--screenshot"),
                 picture, QStringLiteral("--no-store"), QStringLiteral("--zoom"), zoom});
        QVERIFY2(left.exitCode == 0, qPrintable(left.errors));
        QVERIFY(left.out.startsWith(QStringLiteral("no display: the page is drawn off screen\n")));
        QVERIFY(!lineOf(left.out, QStringLiteral("name  ")).isEmpty());
        const QString flow = lineOf(left.out, QStringLiteral("P101.FLOW "));
        QVERIFY2(flow.contains(QStringLiteral("  l/min  ")), qPrintable(flow));
        QVERIFY2(flow.contains(QStringLiteral("  2026-03-02T08:0")), qPrintable(flow)); // the recording's time
        QVERIFY2(!flow.contains(QStringLiteral("mean -")), qPrintable(flow));
        QVERIFY2(left.out.contains(QStringLiteral(" samples taken, 0 ignored, ")), qPrintable(left.out));
        QVERIFY2(left.out.contains(QStringLiteral(" batches, 0 points without a reliable value\n")),
                 qPrintable(left.out));
        QVERIFY(left.out.endsWith(QStringLiteral("picture of page \"overview\": %1\n").arg(picture)));
        QCOMPARE(QImage(picture).size(), size);
    }

    void withADisplayItShowsAWindow()
    {
        const TemporaryFiles files;
        const QString picture = files.path(QStringLiteral("window.png"));
        const Run left = run({demo, QStringLiteral("--source"), loop, QStringLiteral("--after=500ms"),
                              QStringLiteral("--screenshot"), picture, QStringLiteral("--page=statistics")},
                             true);
        QVERIFY2(left.exitCode == 0, qPrintable(left.errors));
        QVERIFY(!left.out.contains(QStringLiteral("no display")));
        QVERIFY(!lineOf(left.out, QStringLiteral("P101.FLOW ")).isEmpty());
        QVERIFY(!QImage(picture).isNull());
    }

    void aPictureOfAWindowThatCantBeWrittenIsAFailure()
    {
        const Run left = run({demo, QStringLiteral("--source"), loop, QStringLiteral("--after=0"),
                              QStringLiteral("--screenshot=/nowhere/picture.png")},
                             true);
        QVERIFY2(left.errors.contains(QStringLiteral("/nowhere/picture.png: can't be written")),
                 qPrintable(left.errors));
        QCOMPARE(left.exitCode, 1);
    }

    void aSourceIsRecorded()
    {
        const TemporaryFiles files;
        const QString file = files.path(QStringLiteral("made.csv"));
        const Run left = run({demo, QStringLiteral("--source=simulation?seed=2"), QStringLiteral("--record"), file,
                              QStringLiteral("--after=1min")});
        QVERIFY2(left.exitCode == 0, qPrintable(left.errors));
        QVERIFY2(left.out.startsWith(file + QStringLiteral(": ")), qPrintable(left.out));
        QVERIFY2(left.out.endsWith(QStringLiteral(" samples recorded\n")), qPrintable(left.out));
        QFile made(file);
        QVERIFY(made.open(QIODevice::ReadOnly));
        QCOMPARE(made.readAll().count('\n'), 62); // the header and seconds 0 to 60
        const Run again =
            run({demo, QStringLiteral("--source=recording:%1?speed=100").arg(file), QStringLiteral("--after=100ms"),
                 QStringLiteral("--screenshot"), files.path(QStringLiteral("picture.png"))});
        QCOMPARE(again.exitCode, 0);
    }

    void whatScriptsPrintIsPrinted_data()
    {
        QTest::addColumn<bool>("isAsked"); // by --trust, or else by the user's answer
        QTest::newRow("trusted for this run") << true;
        QTest::newRow("trusted before") << false;
    }
    void whatScriptsPrintIsPrinted()
    {
        QFETCH(bool, isAsked);
        const TestProject project;
        project.write("pages/plant.pws",
                      TestProject::plantPage().replace("print(1)", "print('loaded')\\nlog.info('told')"
                                                                   "\\nlog.error('bad')\\n1 / 0"));
        if (!isAsked)
            QVERIFY(ScriptTrust::setAnswer(project.folder(), ScriptTrust::Answer::Trusted));
        QStringList arguments = {project.folder(), QStringLiteral("--after=100ms"), QStringLiteral("--no-store"),
                                 QStringLiteral("--screenshot"), project.path("picture.png")};
        if (isAsked)
            arguments.append(QStringLiteral("--trust"));
        const Run left = run(arguments);
        QCOMPARE(left.exitCode, 0);
        QVERIFY2(left.out.startsWith(QStringLiteral("no display: the page is drawn off screen\nloaded\ntold\n")),
                 qPrintable(left.out));
        QVERIFY2(left.errors.contains(QStringLiteral("korvane-runtime: bad\n")), qPrintable(left.errors));
        QVERIFY2(left.errors.contains(QStringLiteral("korvane-runtime: page \"plant\", event \"Canvas Load\", line 4: "
                                                     "ZeroDivisionError: division by zero\n")),
                 qPrintable(left.errors));
        QVERIFY(!left.errors.contains(QStringLiteral("is not trusted")));
        if (isAsked) // for that run alone
            QVERIFY(ScriptTrust::answerFor(project.folder()) == ScriptTrust::Answer::NotAsked);
    }

    void untrustedScriptsAreNotRun_data()
    {
        QTest::addColumn<bool>("isRefused");
        QTest::newRow("nobody was asked") << false;
        QTest::newRow("the user refused") << true;
    }
    void untrustedScriptsAreNotRun()
    {
        QFETCH(bool, isRefused);
        const TestProject project;
        project.write("pages/plant.pws", TestProject::plantPage().replace("print(1)", "print('loaded')"));
        if (isRefused)
            QVERIFY(ScriptTrust::setAnswer(project.folder(), ScriptTrust::Answer::Refused));
        const Run left = run({project.folder(), QStringLiteral("--after=100ms"), QStringLiteral("--no-store"),
                              QStringLiteral("--screenshot"), project.path("picture.png")});
        QCOMPARE(left.exitCode, 0);
        QVERIFY(!left.out.contains(QStringLiteral("loaded")));
        QVERIFY2(left.errors.contains(QStringLiteral("korvane-runtime: the page's scripts don't run: %1 is not trusted "
                                                     "(--trust)\n")
                                          .arg(project.folder())),
                 qPrintable(left.errors));
    }

    void aWindowWithoutItsPageIsAFailure()
    {
        const Run left = run({demo, QStringLiteral("--no-store"), QStringLiteral("--page=nowhere")}, true);
        QVERIFY2(left.errors.contains(QStringLiteral("nowhere.pws: there is no such page")), qPrintable(left.errors));
        QCOMPARE(left.exitCode, 1);
    }

private:
    OwnSettings m_settings;
};

QTEST_GUILESS_MAIN(tst_RuntimeOptions)
#include "tst_runtimeoptions.moc"
