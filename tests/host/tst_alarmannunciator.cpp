#include "host/alarms/alarmannunciator.h"
#include "host/alarms/alarmmanager.h"
#include "scada/audio/korvanettsinterface.h"
#include "scada/audio/waveplayer.h"
#include "tests/support/heardsound.h"
#include "tests/support/temporaryfiles.h"

#include <QApplication>
#include <QProcess>
#include <QtTest>

#include <memory>

namespace {

using Milliseconds = std::chrono::milliseconds;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QString demoSound(const char* name)
{
    return QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop/sounds/%1.wav").arg(QLatin1String(name));
}

/// The samples of one of the demo's sounds, behind its header of 44 bytes.
QByteArray samplesOf(const char* name)
{
    QFile file(demoSound(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s is not there", qPrintable(file.fileName()));
    return file.readAll().mid(44);
}

/// Severity 3 and 7 have sounds, 5 and 9 none.
AlarmPresentation presentation()
{
    AlarmPresentation made;
    made.severities.setSoundPath(3, demoSound("notice"));
    made.severities.setSoundPath(7, demoSound("warning"));
    made.repeatAfter = Milliseconds(5);
    return made;
}

AlarmPresentation withoutSpeech()
{
    AlarmPresentation made = presentation();
    made.severities.setSpeechOn(false);
    return made;
}

struct Spoken
{
    QString text;
    QLocale::Language language;
    friend bool operator==(const Spoken& a, const Spoken& b) { return a.text == b.text && a.language == b.language; }
};

/// Alarms, and what is heard of them.
class Desk
{
public:
    explicit Desk(const AlarmPresentation& shown = presentation()) { begin(shown); }

    void begin(const AlarmPresentation& shown)
    {
        annunciator = std::make_unique<AlarmAnnunciator>(manager, player, &voice, shown);
        QObject::connect(annunciator.get(), &AlarmAnnunciator::spoken,
                         [this](const QString& said, QLocale::Language language) {
                             spoken.append({said, language});
                         });
        QObject::connect(annunciator.get(), &AlarmAnnunciator::problemFound,
                         [this](const QString& problem) { problems.append(problem); });
    }

    quint64 raise(int severity, const char* message, int id = 0)
    {
        ScadaAlarm alarm;
        alarm.objectType = Korvane::ScadaObjectType::AnalogPoint;
        alarm.objectId = id != 0 ? id : ++m_lastId;
        alarm.severity = severity;
        alarm.message = text(message);
        return manager.raiseAlarm(alarm);
    }

    QDateTime now = QDateTime::fromMSecsSinceEpoch(1000000, Qt::UTC);
    AlarmManager manager{[this] { return now; }};
    WavePlayer player;
    KorvaneTTSInterface voice{nullptr}; // silent here: no engine is on the path
    QList<Spoken> spoken;
    QStringList problems;
    std::unique_ptr<AlarmAnnunciator> annunciator;

private:
    qint32 m_lastId = 200000;
};

/// Lets everything happen that is due within that time.
void letPass(Milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

int announceWithoutDevice(int argc, char** argv)
{
    qputenv("ALSA_CONFIG_PATH", "/dev/null");
    const HeardSound withoutPulse;
    qputenv("ALSA_CONFIG_PATH", "/dev/null");
    const QApplication application(argc, argv);
    Desk desk;
    desk.raise(7, "pump stopped");
    desk.raise(7, "valve closed");
    letPass(Milliseconds(50));
    const bool isTold = desk.problems == QStringList{text("There is no sound device: alarms are shown, not heard")} &&
                        desk.annunciator->notice() == desk.problems.constFirst();
    return isTold && desk.spoken.size() == 1 && desk.annunciator->soundingSeverity() == 7 ? 0 : 1;
}

} // namespace

class tst_AlarmAnnunciator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_heard.clear(); }

    void theSoundIsRepeatedUntilItIsAcknowledged()
    {
        Desk desk(withoutSpeech());
        const quint64 id = desk.raise(7, "pump stopped");
        QTRY_COMPARE(m_heard.sounds().size(), 3);
        QCOMPARE(m_heard.sounds()[0].format, text("22050 1 S16_LE"));
        QVERIFY(m_heard.sounds()[0].samples == samplesOf("warning"));
        QVERIFY(m_heard.sounds()[1].samples == samplesOf("warning"));
        QCOMPARE(desk.annunciator->soundingSeverity(), 7);

        QVERIFY(desk.manager.acknowledge(id, text("kim")));
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), -1);
        QCOMPARE(desk.player.state(), QAudio::StoppedState);
        const int heard = m_heard.sounds().size();
        letPass(Milliseconds(50));
        QCOMPARE(m_heard.sounds().size(), heard);
    }

    void aConditionThatIsGoneIsHeardUntilItIsAcknowledged()
    {
        Desk desk(withoutSpeech());
        const quint64 id = desk.raise(7, "pump stopped");
        QVERIFY(desk.manager.returnAlarm(id, desk.now));
        QTRY_VERIFY(m_heard.sounds().size() >= 2);
        QVERIFY(desk.manager.acknowledge(id, {}));
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), -1);
    }

    void theHighestSeverityWins()
    {
        Desk desk(withoutSpeech());
        desk.raise(3, "valve closed");
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 3);
        const quint64 grave = desk.raise(7, "pump stopped");
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 7);
        QTRY_VERIFY(hasHeard("warning"));
        desk.raise(3, "valve closed again");
        letPass(Milliseconds(20));
        QCOMPARE(desk.annunciator->soundingSeverity(), 7);

        // What is left below goes on.
        QVERIFY(desk.manager.acknowledge(grave, {}));
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 3);
        m_heard.clear();
        QTRY_VERIFY(hasHeard("notice"));
    }

    void aSeverityWithoutASoundLeavesThoseBelow()
    {
        Desk desk;
        desk.raise(3, "valve closed");
        desk.raise(9, "fire");
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 3);
        QTRY_COMPARE(desk.spoken.size(), 1);
        QCOMPARE(desk.spoken[0].text, text("fire, and 1 more"));
        QVERIFY(desk.problems.isEmpty());
    }

    void silenceLastsUntilTheNextAlarm()
    {
        Desk desk;
        desk.raise(7, "pump stopped");
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 7);
        desk.annunciator->silence();
        QVERIFY(desk.annunciator->isSilenced());
        QCOMPARE(desk.annunciator->soundingSeverity(), -1);
        QCOMPARE(desk.player.state(), QAudio::StoppedState);
        letPass(Milliseconds(40));
        QCOMPARE(desk.annunciator->soundingSeverity(), -1);
        QVERIFY(desk.spoken.isEmpty());

        desk.raise(3, "valve closed"); // the graver one waits still
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 7);
        QVERIFY(!desk.annunciator->isSilenced());
    }

    void whatNobodyAcknowledgesIsAnnouncedAgain()
    {
        AlarmPresentation shown = presentation();
        shown.remindAfter = Milliseconds(60);
        Desk desk(shown);
        desk.raise(5, "valve closed");
        const quint64 id = desk.raise(9, "pump stopped");
        QTRY_COMPARE(desk.spoken.size(), 1);
        desk.annunciator->silence();
        desk.spoken.clear();
        QTRY_COMPARE(desk.spoken.size(), 1);
        QCOMPARE(desk.spoken[0].text, text("pump stopped, and 1 more"));
        QVERIFY(!desk.annunciator->isSilenced());
        QVERIFY(desk.manager.acknowledge(id, {}));
        desk.spoken.clear();
        QTRY_COMPARE(desk.spoken.size(), 1);
        QCOMPARE(desk.spoken[0].text, text("valve closed"));
    }

    void whatIsSpokenFollowsTheSound()
    {
        Desk desk;
        QAudio::State state = QAudio::ActiveState;
        QObject::connect(desk.annunciator.get(), &AlarmAnnunciator::spoken, [&] { state = desk.player.state(); });
        desk.raise(7, "pump stopped");
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 7);
        QVERIFY(desk.spoken.isEmpty());
        QTRY_COMPARE(desk.spoken.size(), 1);
        QCOMPARE(state, QAudio::IdleState);
        QCOMPARE(desk.spoken[0], (Spoken{text("pump stopped"), QLocale::English}));
    }

    void aBurstIsSummedUp()
    {
        Desk desk;
        for (int i = 0; i < 37; ++i)
            desk.raise(3, "valve closed");
        desk.raise(5, "older");
        desk.raise(5, "pump stopped");
        QTRY_COMPARE(desk.spoken.size(), 1);
        QCOMPARE(desk.spoken[0].text, text("pump stopped, and 38 more"));
        letPass(Milliseconds(20));
        QCOMPARE(desk.spoken.size(), 1);
    }

    void anAlarmWaitsForWhatIsSpokenAGraverOneDoesNot()
    {
        AlarmPresentation silent = presentation();
        silent.severities.setMuted(true);
        Desk desk(silent);
        desk.raise(5, "valve closed");
        QTRY_COMPARE(desk.spoken.size(), 1);
        desk.raise(5, "level high");
        letPass(Milliseconds(20));
        QCOMPARE(desk.spoken.size(), 1);
        desk.raise(9, "pump stopped");
        QTRY_COMPARE(desk.spoken.size(), 2);
        QCOMPARE(desk.spoken[1].text, text("pump stopped, and 1 more"));
    }

    void eachMessageIsSpokenInItsLanguage()
    {
        AlarmPresentation silent = presentation();
        silent.severities.setMuted(true);
        Desk desk(silent);
        desk.raise(5, "펌프 P101 정지");
        QTRY_COMPARE(desk.spoken.size(), 1);
        QCOMPARE(desk.spoken[0], (Spoken{text("펌프 P101 정지"), QLocale::Korean}));
        desk.raise(6, "밸브 닫힘");
        desk.raise(5, "valve closed");
        QTRY_COMPARE(desk.spoken.size(), 2);
        QCOMPARE(desk.spoken[1], (Spoken{text("밸브 닫힘, 외 1건"), QLocale::Korean}));
    }

    void whatIsSettledIsNotSpoken()
    {
        Desk desk;
        const quint64 first = desk.raise(7, "pump stopped");
        desk.raise(7, "valve closed");
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 7);
        QVERIFY(desk.manager.acknowledge(first, {}));
        QTRY_COMPARE(desk.spoken.size(), 1);
        QCOMPARE(desk.spoken[0].text, text("valve closed"));
    }

    void soundAndSpeechCanBeOff()
    {
        Desk desk;
        desk.annunciator->setMuted(true);
        desk.annunciator->setSpeechOn(false);
        desk.raise(7, "pump stopped");
        letPass(Milliseconds(30));
        QCOMPARE(desk.annunciator->soundingSeverity(), -1);
        QVERIFY(desk.spoken.isEmpty());
        desk.annunciator->setMuted(false);
        QCOMPARE(desk.annunciator->soundingSeverity(), 7);
        desk.annunciator->setMuted(true);
        QCOMPARE(desk.annunciator->soundingSeverity(), -1);
        desk.annunciator->setSpeechOn(true); // for what comes from now on
        desk.raise(3, "valve closed");
        QTRY_COMPARE(desk.spoken.size(), 1);
        QCOMPARE(desk.spoken[0].text, text("valve closed"));
    }

    void whatIsHiddenFromTheOperatorIsNotHeard()
    {
        Desk desk;
        const quint64 id = desk.raise(7, "pump stopped", 200001);
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 7);
        QVERIFY(desk.manager.shelve(id, desk.now.addSecs(60), {}, text("known")));
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), -1);
        desk.spoken.clear();
        desk.manager.advance(desk.now.addSecs(60)); // it stands still: announced as new
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 7);
        QTRY_COMPARE(desk.spoken.size(), 1);
    }

    void whatStoodBeforeIsAnnounced()
    {
        Desk desk;
        desk.annunciator.reset();
        desk.raise(7, "pump stopped");
        desk.begin(presentation());
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), 7);
        QTRY_COMPARE(desk.spoken.size(), 1);
    }

    void aSoundThatCannotBePlayedIsToldOnce_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("problem");
        const QString missing = m_files.path(QStringLiteral("missing.wav"));
        QTest::newRow("no such file") << missing
                                      << missing + text(": there is no such sound file; alarms of severity 9 are "
                                                        "shown, not heard");
        const QString folder = QFileInfo(missing).absolutePath();
        QTest::newRow("a folder") << folder
                                  << folder + text(": there is no such sound file; alarms of severity 9 are shown, "
                                                   "not heard");
        const QString garbage = m_files.write(QStringLiteral("garbage.wav"), "RIFF, or so");
        QTest::newRow("no sound file") << garbage
                                       << garbage + text(": can't be played; alarms of severity 9 are shown, not "
                                                         "heard");
    }

    void aSoundThatCannotBePlayedIsToldOnce()
    {
        QFETCH(const QString, path);
        QFETCH(const QString, problem);
        AlarmPresentation shown = presentation();
        shown.severities.setSoundPath(9, path);
        Desk desk(shown);
        const quint64 light = desk.raise(7, "valve closed");
        QTRY_COMPARE(m_heard.sounds().size(), 1);
        const quint64 grave = desk.raise(9, "pump stopped");
        QTRY_COMPARE(desk.problems, QStringList{problem});
        QCOMPARE(desk.annunciator->notice(), problem);
        QTRY_COMPARE(desk.player.state() == QAudio::ActiveState, false); // the other sound does not stand in for it
        QTRY_COMPARE(desk.spoken.size(), 1);
        const int heard = m_heard.sounds().size();
        desk.raise(9, "fire");
        letPass(Milliseconds(30));
        QCOMPARE(m_heard.sounds().size(), heard);
        QCOMPARE(desk.problems.size(), 1);

        for (const quint64 id : {grave, grave + 1})
            QVERIFY(desk.manager.acknowledge(id, {}));
        QTRY_VERIFY(m_heard.sounds().size() > heard);
        QVERIFY(desk.manager.acknowledge(light, {}));
        QTRY_COMPARE(desk.annunciator->soundingSeverity(), -1);
    }

    void aSoundThatComesBackIsHeard()
    {
        const QString path = m_files.path(QStringLiteral("later.wav"));
        AlarmPresentation shown = withoutSpeech();
        shown.severities.setSoundPath(9, path);
        Desk desk(shown);
        const QSignalSpy notices(desk.annunciator.get(), &AlarmAnnunciator::noticeChanged);
        desk.raise(9, "pump stopped");
        QTRY_COMPARE(desk.problems.size(), 1);
        QVERIFY(QFile::copy(demoSound("urgent"), path));
        QTRY_VERIFY(hasHeard("urgent"));
        QVERIFY(desk.annunciator->notice().isEmpty());
        QCOMPARE(notices.size(), 2);
        QCOMPARE(desk.problems.size(), 1);
    }

    void aSoundThatStopsByItselfIsBegunAgain()
    {
        Desk desk(withoutSpeech());
        desk.raise(7, "pump stopped");
        QTRY_COMPARE(desk.player.state(), QAudio::ActiveState);
        desk.player.stop(); // as if the device were lost
        QTRY_VERIFY(hasHeard("warning"));
    }

    void missingSoundsAreToldBeforeTheyAreNeeded()
    {
        AlarmPresentation shown = presentation();
        shown.severities.setSoundPath(2, QStringLiteral("/nowhere/soft.wav"));
        Desk desk(shown);
        desk.annunciator->checkSounds();
        QCOMPARE(desk.problems,
                 QStringList{text("/nowhere/soft.wav: there is no such sound file; alarms of severity 2 are "
                                  "shown, not heard")});
        QVERIFY(desk.annunciator->notice().isEmpty());
    }

    void withoutATimeThereIsNoReminder()
    {
        AlarmPresentation shown = presentation();
        shown.remindAfter = Milliseconds(0);
        Desk desk(shown);
        desk.raise(5, "valve closed");
        QTRY_COMPARE(desk.spoken.size(), 1);
        desk.annunciator->silence();
        letPass(Milliseconds(30));
        QCOMPARE(desk.spoken.size(), 1);
        QVERIFY(desk.annunciator->isSilenced());
    }

    void aMissingDeviceIsToldAndTheRestGoesOn()
    {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--without-device")});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 0);
    }

    void theEndStopsTheSound()
    {
        Desk desk;
        desk.raise(7, "pump stopped");
        QTRY_COMPARE(desk.player.state(), QAudio::ActiveState);
        desk.annunciator.reset();
        QVERIFY(desk.player.state() != QAudio::ActiveState);
        desk.raise(7, "valve closed");
        letPass(Milliseconds(20));
        QVERIFY(desk.player.state() != QAudio::ActiveState);
    }

private:
    /// Whether the whole sound was heard; its end comes with the start of the next.
    bool hasHeard(const char* name) const
    {
        const auto sounds = m_heard.sounds();
        const QByteArray samples = samplesOf(name);
        return std::any_of(sounds.begin(), sounds.end(), [&](const auto& each) { return each.samples == samples; });
    }

    HeardSound m_heard;
    TemporaryFiles m_files;
};

int main(int argc, char** argv)
{
    if (argc > 1 && QByteArray(argv[1]) == "--without-device")
        return announceWithoutDevice(argc, argv);
    tst_AlarmAnnunciator test;
    const QApplication application(argc, argv);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_alarmannunciator.moc"
