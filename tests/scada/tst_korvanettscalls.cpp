#include "tests/support/temporaryfiles.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

namespace {

/// What one run of the speaking program left behind.
struct Run
{
    QStringList calls;
    QByteArray messages;
};

/// What tells the engines apart.
struct Voice
{
    const char* name; ///< of the language
    const char* suffix;
    const char* library;
};

constexpr Voice voices[] = {{"English", "ENG", "vt_ENG"}, {"Korean", "KOR", "vt_kor"}};

/// Steps or calls, written for English, in a voice.
QStringList in(const Voice& voice, QStringList lines)
{
    lines.replaceInStrings(QStringLiteral("English="), QLatin1String(voice.name) + QLatin1Char('='));
    return lines.replaceInStrings(QStringLiteral("ENG"), QLatin1String(voice.suffix));
}

QString libraryFolder(const QString& variant)
{
    return QStringLiteral(KORVANE_SPEECH_VARIANTS "/") + variant;
}

/// The calls by which an engine comes up, and by which it goes.
QStringList withStart(const QStringList& between)
{
    return QStringList{QStringLiteral("ENG opened"), QStringLiteral("ENG info 1 (nil) *0 4"),
                       QStringLiteral("ENG info 4 (nil) *0 4"), QStringLiteral("ENG load (nil) -1 (nil) (nil)")} +
           between + QStringList{QStringLiteral("ENG unload -1")};
}

QString played(const char* language, const char* hex)
{
    return QStringLiteral("%1 play (nil) 0 <%2> -1 -1 -1 -1 -1 -1 -1").arg(QLatin1String(language), QLatin1String(hex));
}

QStringList without(QStringList calls, const char* call)
{
    calls.removeAll(QLatin1String(call));
    return calls;
}

/// "A" in the program's own encoding.
const QStringList oneMessage{QStringLiteral("English=A")};

} // namespace

// What the speech front end calls in a speech library. A program of its own speaks, with libraries that write down how
// they are called: a library that is loaded stays to the program's end.
class tst_KorvaneTTSCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callsAreAsAgreed_data()
    {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QStringList>("calls");

        const auto inBoth = [](const char* name, const QStringList& steps, const QStringList& calls) {
            for (const Voice& voice : voices)
                QTest::addRow("%s: %s", voice.name, name) << in(voice, steps) << in(voice, calls);
        };
        inBoth("an engine comes up with its first message and goes with the front end", oneMessage,
               withStart({played("ENG", "41")}));
        inBoth("it comes up once", {QStringLiteral("English=A"), QStringLiteral("English=B")},
               withStart({played("ENG", "41"), played("ENG", "42")}));
        inBoth("an empty text is passed on", {QStringLiteral("English=")}, withStart({played("ENG", "")}));
        inBoth("a text goes out in the local encoding", {QStringLiteral("English=\uAC00A")},
               withStart({played("ENG", "eab08041")}));
        inBoth("what the local code page lacks is replaced",
               {QStringLiteral("codepage=ISO-8859-1"), QStringLiteral("English=\u00E4\uAC00A")},
               withStart({played("ENG", "e43f41")}));
        inBoth("Korean in the Korean code page", {QStringLiteral("codepage=EUC-KR"), QStringLiteral("English=\uAC00")},
               withStart({played("ENG", "b0a1")}));
        inBoth(
            "a new front end brings the engine up anew",
            {QStringLiteral("English=A"), QStringLiteral("end"), QStringLiteral("begin"), QStringLiteral("English=B")},
            withStart({played("ENG", "41")}) + withStart({played("ENG", "42")}).mid(1));
        inBoth(
            "an engine that never spoke is not shut down, though its library is there",
            {QStringLiteral("English=A"), QStringLiteral("end"), QStringLiteral("begin"), QStringLiteral("Japanese=B")},
            withStart({played("ENG", "41")}));

        QTest::newRow("languages come up by themselves")
            << QStringList{QStringLiteral("English=A"), QStringLiteral("Korean=B"), QStringLiteral("English=C")}
            << QStringList(
                   withStart({played("ENG", "41")}).mid(0, 5) +
                   in(voices[1], withStart({played("ENG", "42")})).mid(0, 5) +
                   QStringList{played("ENG", "43"), QStringLiteral("ENG unload -1"), QStringLiteral("KOR unload -1")});
        QTest::newRow("no library is opened for other languages")
            << QStringList{QStringLiteral("Japanese=A")} << QStringList();
        QTest::newRow("a front end that never spoke calls nothing") << QStringList() << QStringList();
    }

    void callsAreAsAgreed()
    {
        QFETCH(QStringList, steps);
        QTEST(run(QStringLiteral("complete"), steps).calls, "calls");
    }

    void answersDecide_data()
    {
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("answers");
        QTest::addColumn<QStringList>("calls");

        const auto row = [](const char* name, const QStringList& answers, const QStringList& calls) {
            for (const Voice& voice : voices) {
                QTest::addRow("%s: %s", voice.name, name)
                    << in(voice, oneMessage + oneMessage) << answers << in(voice, calls);
            }
        };
        const auto failed = [](int calls) {
            const QStringList all = withStart({});
            return QStringList(all.mid(0, calls) + QStringList{all.last()});
        };
        const QStringList spoken = withStart({played("ENG", "41"), played("ENG", "41")});

        row("request 1 fails", {QStringLiteral("SPEECH_INFO_1=1")}, failed(2));
        row("request 1 fails with a negative code", {QStringLiteral("SPEECH_INFO_1=-1")}, failed(2));
        row("request 4 fails", {QStringLiteral("SPEECH_INFO_4=3")}, failed(3));
        row("loading gives another code than request 4", {QStringLiteral("SPEECH_LOADED=1")}, failed(4));
        row("loading gives 0 and success is 1", {QStringLiteral("SPEECH_VALUE_4=1")}, failed(4));
        row("the code for success is not 0", {QStringLiteral("SPEECH_VALUE_4=1"), QStringLiteral("SPEECH_LOADED=1")},
            spoken);
        row("a negative code for success", {QStringLiteral("SPEECH_VALUE_4=-1"), QStringLiteral("SPEECH_LOADED=-1")},
            spoken);
        row("16 bits count: FFFF is -1", {QStringLiteral("SPEECH_VALUE_4=-1"), QStringLiteral("SPEECH_LOADED=65535")},
            spoken);
        row("16 bits count: FFFF is not 65535",
            {QStringLiteral("SPEECH_VALUE_4=65535"), QStringLiteral("SPEECH_LOADED=65535")}, failed(4));
        row("16 bits count: what lies above is not looked at", {QStringLiteral("SPEECH_LOADED=65536")}, spoken);
        row("what request 1 gives is overwritten", {QStringLiteral("SPEECH_VALUE_1=7")},
            QStringList(spoken).replaceInStrings(QStringLiteral("info 4 (nil) *0"), QStringLiteral("info 4 (nil) *7")));
    }

    void answersDecide()
    {
        QFETCH(QStringList, messages);
        QFETCH(QStringList, answers);
        // Two messages: what failed is not tried again.
        const Run done = run(QStringLiteral("complete"), messages, answers);
        QTEST(done.calls, "calls");
        QCOMPARE(done.messages, QByteArray());
    }

    void aLibraryMayLackEntryPoints_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("calls");

        const auto row = [](const char* name, const char* missing, const QStringList& calls) {
            for (const Voice& voice : voices) {
                QTest::addRow("%s: %s", voice.name, name)
                    << QString::fromLatin1(missing) << in(voice, oneMessage + oneMessage) << in(voice, calls);
            }
        };
        const QStringList complete = withStart({played("ENG", "41"), played("ENG", "41")});
        const QStringList start = withStart({});

        row("without info it is silent and still shut down", "GetTTSInfo", {start.first(), start.last()});
        row("without load it is silent and still shut down", "LOADTTS",
            without(start, "ENG load (nil) -1 (nil) (nil)"));
        row("without play it comes up and stays silent", "PLAYTTS", start);
        row("without unload it speaks", "UNLOADTTS", without(complete, "ENG unload -1"));
        row("text to buffer is not needed", "TextToBuffer", complete);
        row("text to file is not needed", "TextToFile", complete);
        row("stop is not needed", "STOPTTS", complete);
        row("restart is not needed", "RESTARTTTS", complete);
        row("pause is not needed", "PAUSETTS", complete);
    }

    void aLibraryMayLackEntryPoints()
    {
        QFETCH(QString, missing);
        QFETCH(QStringList, messages);
        const Run done = run(QStringLiteral("without") + missing, messages);
        QTEST(done.calls, "calls");
        QCOMPARE(done.messages, QByteArray());
    }

    void withoutALibraryItIsSilent()
    {
        const Run done = run(QStringLiteral("none"), {QStringLiteral("English=A"), QStringLiteral("Korean=B")});
        QCOMPARE(done.calls, QStringList());
        QCOMPARE(done.messages, QByteArray());
    }

    void aLibraryMayComeLater_data()
    {
        QTest::addColumn<QString>("library");
        QTest::addColumn<QStringList>("before"); // messages that are dropped
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QStringList>("calls");
        const auto row = [](const char* name, const QStringList& steps, const QStringList& calls) {
            for (const Voice& voice : voices) {
                QTest::addRow("%s: %s", voice.name, name) << QString::fromLatin1(voice.library) << in(voice, oneMessage)
                                                          << in(voice, steps) << in(voice, calls);
            }
        };
        row("an engine that looked for it does so no more", {QStringLiteral("English=B")}, {});
        row("the next front end finds it",
            {QStringLiteral("English=B"), QStringLiteral("end"), QStringLiteral("begin"), QStringLiteral("English=C")},
            withStart({played("ENG", "43")}));
        row("what one engine finds is there for all: the one that failed shuts it down",
            {QStringLiteral("begin"), QStringLiteral("English=B"), QStringLiteral("end"), QStringLiteral("English=C")},
            withStart({played("ENG", "42"), QStringLiteral("ENG unload -1"), played("ENG", "43")}));
    }

    void aLibraryMayComeLater()
    {
        QFETCH(QString, library);
        QFETCH(QStringList, before);
        QFETCH(QStringList, steps);
        const TemporaryFiles files;
        const QString folder = QFileInfo(files.path(QStringLiteral("x"))).path();
        const QString put =
            QStringLiteral("put=%1/lib%2.so:%3").arg(libraryFolder(QStringLiteral("complete")), library, folder);
        QTEST(runIn(folder, before + QStringList{put} + steps).calls, "calls");
    }

    void entryPointsAreLookedUpInTheirOrder_data()
    {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("suffix");
        QTest::newRow("English") << QStringLiteral("English=A") << QStringLiteral("ENG");
        QTest::newRow("Korean") << QStringLiteral("Korean=A") << QStringLiteral("KOR");
    }

    void entryPointsAreLookedUpInTheirOrder()
    {
#ifndef __GLIBC__
        QSKIP("the dynamic linker does not say what it looks up");
#endif
        QFETCH(QString, step);
        QFETCH(QString, suffix);
        const Run done = run(QStringLiteral("complete"), {step}, {QStringLiteral("LD_DEBUG=symbols")});
        QStringList names;
        const QRegularExpression lookUp(QStringLiteral("symbol=(VT_\\w+); .*libvt_"));
        for (const QByteArray& line : done.messages.split('\n')) {
            const QRegularExpressionMatch match = lookUp.match(QString::fromUtf8(line));
            if (match.hasMatch())
                names.append(match.captured(1));
        }
        QStringList wanted{QStringLiteral("GetTTSInfo"), QStringLiteral("LOADTTS"),    QStringLiteral("TextToBuffer"),
                           QStringLiteral("TextToFile"), QStringLiteral("UNLOADTTS"),  QStringLiteral("PLAYTTS"),
                           QStringLiteral("STOPTTS"),    QStringLiteral("RESTARTTTS"), QStringLiteral("PAUSETTS")};
        for (QString& name : wanted)
            name = QStringLiteral("VT_%1_%2").arg(name, suffix);
        QCOMPARE(names, wanted);
    }

private:
    static Run run(const QString& variant, const QStringList& steps, const QStringList& answers = {})
    {
        return runIn(libraryFolder(variant), steps, answers);
    }

    static Run runIn(const QString& folder, const QStringList& steps, const QStringList& answers = {})
    {
        const TemporaryFiles files;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LD_LIBRARY_PATH"), folder);
        environment.insert(QStringLiteral("SPEECH_CALLS"), files.path(QStringLiteral("calls")));
        for (const QString& answer : answers) {
            environment.insert(answer.section(QLatin1Char('='), 0, 0), answer.section(QLatin1Char('='), 1));
        }
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(KORVANE_SPEAKING_PROGRAM), steps);
        if (!program.waitForFinished() || program.exitStatus() != QProcess::NormalExit || program.exitCode() != 0)
            qFatal("%s: %s", KORVANE_SPEAKING_PROGRAM, program.readAllStandardError().right(2000).constData());

        QFile calls(files.path(QStringLiteral("calls")));
        Run done{{}, program.readAllStandardError()};
        if (calls.open(QIODevice::ReadOnly))
            done.calls = QString::fromLatin1(calls.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        return done;
    }
};

QTEST_GUILESS_MAIN(tst_KorvaneTTSCalls)
#include "tst_korvanettscalls.moc"
