#include "host/speech/speechlibraries.h"
#include "tests/support/heardspeech.h"

#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

namespace {

/// What the program says of one language.
struct Line
{
    QString language;
    QString origin;
    QString fileName;
    QString byName;
    QString problem;
};

const QString builtFolder = QStringLiteral(KORVANE_SPEECH_BUILT);
const QString vendorFolder = QStringLiteral(KORVANE_SPEECH_VARIANTS "/complete");

} // namespace

class tst_SpeechLibraries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAVendorsEngineTheOwnSpeaks_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("from its folder") << QStringList{builtFolder};
        QTest::newRow("from the second folder") << QStringList{m_files.path(QStringLiteral("none")), builtFolder};
        QTest::newRow("asked twice") << QStringList{QStringLiteral("--twice"), builtFolder};
    }

    void withoutAVendorsEngineTheOwnSpeaks()
    {
        QFETCH(QStringList, arguments);
        const QVector<Line> lines = prepare(arguments);
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines[0].language, QStringLiteral("English"));
        QCOMPARE(lines[1].language, QStringLiteral("Korean"));
        QCOMPARE(lines[0].fileName, builtFolder + QStringLiteral("/libvt_ENG.so"));
        QCOMPARE(lines[1].fileName, builtFolder + QStringLiteral("/libvt_kor.so"));
        for (const Line& line : lines) {
            QCOMPARE(line.origin, QStringLiteral("own"));
            QCOMPARE(line.byName, QStringLiteral("found by name"));
            QCOMPARE(line.problem, QString());
        }
    }

    void aVendorsEngineGoesFirst()
    {
        const QVector<Line> lines = prepare({builtFolder}, {QStringLiteral("LD_LIBRARY_PATH=") + vendorFolder});
        QCOMPARE(lines.size(), 2);
        for (const Line& line : lines) {
            QCOMPARE(line.origin, QStringLiteral("vendor"));
            QVERIFY(line.fileName.contains(QLatin1String("vt_")));
            QCOMPARE(line.byName, QStringLiteral("found by name"));
            QCOMPARE(line.problem, QString());
        }
    }

    void eachLanguageIsFoundByItself()
    {
        QFile::link(vendorFolder + QStringLiteral("/libvt_kor.so"), m_files.path(QStringLiteral("libvt_kor.so")));
        const QString folder = QFileInfo(m_files.path(QStringLiteral("x"))).path();
        const QVector<Line> lines = prepare({builtFolder}, {QStringLiteral("LD_LIBRARY_PATH=") + folder});
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines[0].origin, QStringLiteral("own"));
        QCOMPARE(lines[1].origin, QStringLiteral("vendor"));
    }

    void withoutALibraryTheReasonIsTold()
    {
        const QString folder = m_files.path(QStringLiteral("none"));
        const QVector<Line> lines = prepare({folder});
        QCOMPARE(lines.size(), 2);
        for (const Line& line : lines) {
            QCOMPARE(line.origin, QStringLiteral("none"));
            QCOMPARE(line.fileName, QString());
            QCOMPARE(line.byName, QStringLiteral("not found by name"));
        }
        QVERIFY2(lines[0].problem.contains(QLatin1String("vt_ENG")), qPrintable(lines[0].problem));
        QVERIFY2(lines[1].problem.contains(folder + QLatin1String("/vt_kor")), qPrintable(lines[1].problem));
    }

    void whatKeepsItFromSpeakingIsTold_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("korean");

        const QString noData = QStringLiteral("espeak-ng does not start: install its data (espeak-ng-data)");
        const QString noVoice =
            QStringLiteral("espeak-ng has no voice for the language: install its data (espeak-ng-data) anew");
        const QString noOutput = QStringLiteral("there is no audio output to play speech on");

        QTest::newRow("no data") << dataWithout({}, false) << noData << noData;
        QTest::newRow("a voice without its dictionary")
            << dataWithout({QStringLiteral("ko_dict")}, true) << QString() << noVoice;
        QTest::newRow("a voice that is not there") << dataWithout({QStringLiteral("lang")}, true) << noVoice << noVoice;
        QTest::newRow("no sound card") << QStringLiteral("ALSA_CONFIG_PATH=") +
                                              m_files.write(QStringLiteral("none.conf"), "\n")
                                       << noOutput << noOutput;
        QTest::newRow("no audio plugin") << QStringLiteral("OWN_PLUGINS=") + m_files.path(QStringLiteral("none"))
                                         << noOutput << noOutput;
    }

    void whatKeepsItFromSpeakingIsTold()
    {
        QFETCH(QString, setting);
        const QVector<Line> lines = prepare({builtFolder}, {setting});
        QCOMPARE(lines.size(), 2);
        QTEST(lines[0].problem, "english");
        QTEST(lines[1].problem, "korean");
        for (const Line& line : lines)
            QCOMPARE(line.origin, QStringLiteral("own"));
    }

    void aLibraryWithoutInformationIsTold()
    {
        const QString folder = QStringLiteral(KORVANE_SPEECH_VARIANTS "/withoutGetTTSInfo");
        const QVector<Line> lines = prepare({folder});
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines[0].problem, QStringLiteral("the library lacks VT_GetTTSInfo_ENG"));
    }

    void ownFoldersLieByTheProgramAndInTheInstallation()
    {
        const QString program = QCoreApplication::applicationDirPath();
        const QStringList folders = SpeechLibraries::ownFolders();
        QCOMPARE(folders.size(), 2);
        QCOMPARE(folders.first(), program + QStringLiteral("/speech"));
        QCOMPARE(QDir(program).relativeFilePath(folders.last()), QStringLiteral(KORVANE_SPEECH_INSTALLED));
    }

    void theLibrariesExportTheirEntryPointsAndNothingElse_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("suffix");
        QTest::newRow("English") << QStringLiteral("vt_ENG") << QStringLiteral("ENG");
        QTest::newRow("Korean") << QStringLiteral("vt_kor") << QStringLiteral("KOR");
    }

    void theLibrariesExportTheirEntryPointsAndNothingElse()
    {
        QFETCH(QString, name);
        QFETCH(QString, suffix);
        QStringList wanted{
            QStringLiteral("VT_GetTTSInfo_"),   QStringLiteral("VT_LOADTTS_"),    QStringLiteral("VT_PAUSETTS_"),
            QStringLiteral("VT_PLAYTTS_"),      QStringLiteral("VT_RESTARTTTS_"), QStringLiteral("VT_STOPTTS_"),
            QStringLiteral("VT_TextToBuffer_"), QStringLiteral("VT_TextToFile_"), QStringLiteral("VT_UNLOADTTS_")};
        for (QString& entryPoint : wanted)
            entryPoint += suffix;

        QProcess nm;
        nm.start(QStringLiteral("nm"), {QStringLiteral("-D"), QStringLiteral("--defined-only"), QStringLiteral("-P"),
                                        QStringLiteral("%1/lib%2.so").arg(builtFolder, name)});
        QVERIFY2(nm.waitForFinished() && nm.exitCode() == 0, nm.readAllStandardError().constData());
        QStringList names;
        const QStringList lines = QString::fromLatin1(nm.readAllStandardOutput()).split(QLatin1Char('\n'));
        for (const QString& line : lines) {
            // Names with an underscore in front are the linker's and the sanitizers', which also describe functions' types.
            static const QRegularExpression foreign(QStringLiteral("^(_(?!Z)|_ZT[IS]F)"));
            if (!line.isEmpty() && !foreign.match(line).hasMatch())
                names.append(line.section(QLatin1Char(' '), 0, 0));
        }
        names.sort();
        QCOMPARE(names, wanted);
    }

private:
    /// A setting by which espeak-ng finds data that lack some files, or none at all.
    QString dataWithout(const QStringList& names, bool hasOthers)
    {
        const QDir folder(m_files.path(QStringLiteral("data%1").arg(++m_dataFolders)));
        folder.mkpath(QStringLiteral("espeak-ng-data"));
        const QDir data(QStringLiteral(KORVANE_ESPEAK_DATA));
        const QStringList entries = hasOthers ? data.entryList(QDir::AllEntries | QDir::NoDotAndDotDot) : QStringList();
        for (const QString& name : entries) {
            if (!names.contains(name))
                QFile::link(data.filePath(name), folder.filePath(QStringLiteral("espeak-ng-data/") + name));
        }
        return QStringLiteral("ESPEAK_DATA_PATH=") + folder.path();
    }

    QVector<Line> prepare(const QStringList& arguments, const QStringList& settings = {}) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("OWN_PLUGINS"), QCoreApplication::libraryPaths().constFirst());
        environment.insert(QStringLiteral("SPEECH_CALLS"), m_files.path(QStringLiteral("calls")));
        for (const QString& setting : settings)
            environment.insert(setting.section(QLatin1Char('='), 0, 0), setting.section(QLatin1Char('='), 1));
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(KORVANE_PREPARED_SPEECH), arguments);
        if (!program.waitForFinished() || program.exitStatus() != QProcess::NormalExit || program.exitCode() != 0)
            qFatal("%s: %s", KORVANE_PREPARED_SPEECH, program.readAllStandardError().constData());

        QVector<Line> lines;
        const QStringList texts =
            QString::fromUtf8(program.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString& text : texts) {
            const QStringList parts = text.split(QLatin1Char('|'));
            lines.append({parts.value(0), parts.value(1), parts.value(2), parts.value(3), parts.value(4)});
        }
        return lines;
    }

    TemporaryFiles m_files;
    int m_dataFolders = 0;
};

int main(int argc, char** argv)
{
    const HeardSpeech card; // the programs get its environment
    const QCoreApplication application(argc, argv);
    tst_SpeechLibraries test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_speechlibraries.moc"
