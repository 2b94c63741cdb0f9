#include "scada/audio/korvanettsinterface.h"
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

class LoadingFrontEnd : public KorvaneTTSInterface
{
public:
    LoadingFrontEnd() : KorvaneTTSInterface(nullptr) { loadEngine(); }
};

QStringList childrenOf(const QObject& object)
{
    QStringList names;
    for (const QObject* child : object.children())
        names.append(QString::fromLatin1(child->metaObject()->className()));
    return names;
}

} // namespace

class tst_KorvaneTTSInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itHasNoEnginesBeforeAMessage()
    {
        const KorvaneTTSInterface speech(nullptr);
        QCOMPARE(childrenOf(speech), QStringList());
    }

    void anUnsupportedLanguageMakesBothEnginesAndIsDropped_data()
    {
        QTest::addColumn<QLocale::Language>("language");
        QTest::newRow("Japanese") << QLocale::Japanese;
        QTest::newRow("any language") << QLocale::AnyLanguage;
        QTest::newRow("the C locale") << QLocale::C;
    }

    void anUnsupportedLanguageMakesBothEnginesAndIsDropped()
    {
        QFETCH(QLocale::Language, language);
        KorvaneTTSInterface speech(nullptr);
        speech.playMessage(QStringLiteral("text"), language);
        const QStringList both{QStringLiteral("VoiceWareEnglishEngine"), QStringLiteral("VoiceWareKoreanEngine")};
        QCOMPARE(childrenOf(speech), both);
        speech.playMessage(QStringLiteral("text"), language);
        QCOMPARE(childrenOf(speech), both);
    }

    void enginesThatAreLoadedAreNotMadeAgain()
    {
        LoadingFrontEnd speech;
        speech.playMessage(QStringLiteral("text"), QLocale::Japanese);
        QCOMPARE(speech.children().size(), 2);
    }

    void enginesGoWithTheFrontEnd()
    {
        QPointer<QObject> engine;
        {
            const LoadingFrontEnd speech;
            engine = speech.children().constFirst();
            QVERIFY(engine);
        }
        QVERIFY(!engine);
    }

    void callsAreAsAgreed_data()
    {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QStringList>("calls");

        QTest::newRow("an engine comes up with its first message and goes with the front end")
            << oneMessage << withStart({played("ENG", "41")});
        QTest::newRow("it comes up once") << QStringList{QStringLiteral("English=A"), QStringLiteral("English=B")}
                                          << withStart({played("ENG", "41"), played("ENG", "42")});
        QTest::newRow("an empty text is passed on")
            << QStringList{QStringLiteral("English=")} << withStart({played("ENG", "")});
        QTest::newRow("Korean goes to its engine alone, in the local encoding")
            << QStringList{QStringLiteral("Korean=\uAC00A")} << korean({played("KOR", "eab08041")});
        QTest::newRow("languages come up by themselves")
            << QStringList{QStringLiteral("English=A"), QStringLiteral("Korean=B"), QStringLiteral("English=C")}
            << QStringList(
                   withStart({played("ENG", "41")}).mid(0, 5) + korean({played("KOR", "42")}).mid(0, 5) +
                   QStringList{played("ENG", "43"), QStringLiteral("ENG unload -1"), QStringLiteral("KOR unload -1")});
        QTest::newRow("what the local code page lacks is replaced")
            << QStringList{QStringLiteral("codepage=ISO-8859-1"), QStringLiteral("English=\u00E4\uAC00A")}
            << withStart({played("ENG", "e43f41")});
        QTest::newRow("Korean in the Korean code page")
            << QStringList{QStringLiteral("codepage=EUC-KR"), QStringLiteral("English=\uAC00")}
            << withStart({played("ENG", "b0a1")});
        QTest::newRow("no library is opened for other languages")
            << QStringList{QStringLiteral("Japanese=A")} << QStringList();
        QTest::newRow("a new front end brings the engine up anew")
            << QStringList{QStringLiteral("English=A"), QStringLiteral("renew"), QStringLiteral("English=B")}
            << QStringList(withStart({played("ENG", "41")}) + withStart({played("ENG", "42")}).mid(1));
        QTest::newRow("an engine that never spoke is not shut down, though its library is there")
            << QStringList{QStringLiteral("English=A"), QStringLiteral("renew"), QStringLiteral("Japanese=B")}
            << withStart({played("ENG", "41")});
        QTest::newRow("a front end that never spoke calls nothing") << QStringList() << QStringList();
    }

    void callsAreAsAgreed()
    {
        QFETCH(QStringList, steps);
        QTEST(run(QStringLiteral("complete"), steps).calls, "calls");
    }

    void answersDecide_data()
    {
        QTest::addColumn<QStringList>("answers");
        QTest::addColumn<QStringList>("calls");

        const auto failed = [](int calls) {
            const QStringList all = withStart({});
            return QStringList(all.mid(0, calls) + QStringList{all.last()});
        };
        const QStringList spoken = withStart({played("ENG", "41"), played("ENG", "41")});

        QTest::newRow("request 1 fails") << QStringList{QStringLiteral("SPEECH_INFO_1=1")} << failed(2);
        QTest::newRow("request 1 fails with a negative code")
            << QStringList{QStringLiteral("SPEECH_INFO_1=-1")} << failed(2);
        QTest::newRow("request 4 fails") << QStringList{QStringLiteral("SPEECH_INFO_4=3")} << failed(3);
        QTest::newRow("loading gives another code than request 4")
            << QStringList{QStringLiteral("SPEECH_LOADED=1")} << failed(4);
        QTest::newRow("loading gives 0 and success is 1")
            << QStringList{QStringLiteral("SPEECH_VALUE_4=1")} << failed(4);
        QTest::newRow("the code for success is not 0")
            << QStringList{QStringLiteral("SPEECH_VALUE_4=1"), QStringLiteral("SPEECH_LOADED=1")} << spoken;
        QTest::newRow("a negative code for success")
            << QStringList{QStringLiteral("SPEECH_VALUE_4=-1"), QStringLiteral("SPEECH_LOADED=-1")} << spoken;
        QTest::newRow("16 bits count: FFFF is -1")
            << QStringList{QStringLiteral("SPEECH_VALUE_4=-1"), QStringLiteral("SPEECH_LOADED=65535")} << spoken;
        QTest::newRow("16 bits count: FFFF is not 65535")
            << QStringList{QStringLiteral("SPEECH_VALUE_4=65535"), QStringLiteral("SPEECH_LOADED=65535")} << failed(4);
        QTest::newRow("16 bits count: what lies above is not looked at")
            << QStringList{QStringLiteral("SPEECH_LOADED=65536")} << spoken;
        QTest::newRow("what request 1 gives is overwritten")
            << QStringList{QStringLiteral("SPEECH_VALUE_1=7")}
            << QStringList(spoken).replaceInStrings(QStringLiteral("info 4 (nil) *0"),
                                                    QStringLiteral("info 4 (nil) *7"));
    }

    void answersDecide()
    {
        QFETCH(QStringList, answers);
        // Twice: what failed is not tried again.
        const Run done = run(QStringLiteral("complete"), oneMessage + oneMessage, answers);
        QTEST(done.calls, "calls");
        QCOMPARE(done.messages, QByteArray());
    }

    void aLibraryMayLackEntryPoints_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::addColumn<QStringList>("calls");

        const QStringList complete = withStart({played("ENG", "41"), played("ENG", "41")});
        const QStringList start = withStart({});

        QTest::newRow("without info it is silent and still shut down")
            << QStringLiteral("GetTTSInfo") << QStringList{start.first(), start.last()};
        QTest::newRow("without load it is silent and still shut down")
            << QStringLiteral("LOADTTS") << without(start, "ENG load (nil) -1 (nil) (nil)");
        QTest::newRow("without play it comes up and stays silent") << QStringLiteral("PLAYTTS") << start;
        QTest::newRow("without unload it speaks") << QStringLiteral("UNLOADTTS") << without(complete, "ENG unload -1");
        QTest::newRow("text to buffer is not needed") << QStringLiteral("TextToBuffer") << complete;
        QTest::newRow("text to file is not needed") << QStringLiteral("TextToFile") << complete;
        QTest::newRow("stop is not needed") << QStringLiteral("STOPTTS") << complete;
        QTest::newRow("restart is not needed") << QStringLiteral("RESTARTTTS") << complete;
        QTest::newRow("pause is not needed") << QStringLiteral("PAUSETTS") << complete;
    }

    void aLibraryMayLackEntryPoints()
    {
        QFETCH(QString, missing);
        const Run done = run(QStringLiteral("without") + missing, oneMessage + oneMessage);
        QTEST(done.calls, "calls");
        QCOMPARE(done.messages, QByteArray());
    }

    void withoutALibraryItIsSilent()
    {
        const Run done = run(QStringLiteral("none"), {QStringLiteral("English=A"), QStringLiteral("Korean=B")});
        QCOMPARE(done.calls, QStringList());
        QCOMPARE(done.messages, QByteArray());
    }

    void aLibraryThatComesLaterIsFoundByTheNextFrontEnd()
    {
        const TemporaryFiles files;
        const QString folder = QFileInfo(files.path(QStringLiteral("x"))).path();
        const QString put =
            QStringLiteral("put=%1/libvt_ENG.so:%2").arg(libraryFolder(QStringLiteral("complete")), folder);
        const QStringList dropped{QStringLiteral("English=A"), put, QStringLiteral("English=B")};
        QCOMPARE(runIn(folder, dropped).calls, QStringList());

        QVERIFY(QFile::remove(folder + QStringLiteral("/libvt_ENG.so")));
        const QStringList renewed = dropped + QStringList{QStringLiteral("renew"), QStringLiteral("English=C")};
        QCOMPARE(runIn(folder, renewed).calls, withStart({played("ENG", "43")}));
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
    static QStringList korean(const QStringList& between)
    {
        return withStart(between).replaceInStrings(QStringLiteral("ENG"), QStringLiteral("KOR"));
    }

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

QTEST_GUILESS_MAIN(tst_KorvaneTTSInterface)
#include "tst_korvanettsinterface.moc"
