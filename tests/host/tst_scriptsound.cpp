// What scripts let be heard: korvane.sound and korvane.speech.

#include "scada/audio/korvanettsinterface.h"
#include "scada/audio/waveplayer.h"
#include "tests/support/heardsound.h"
#include "tests/support/scriptpage.h"
#include "tests/support/soundfiles.h"
#include "tests/support/temporaryfiles.h"
#include "tests/support/writtenspeech.h"

#include <QApplication>
#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

constexpr int lastTenth = 2 * 2205; // bytes of a second of m_sound: heard when its output ends

/// Lets pass what was put off.
void letPass()
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&loop] { QTimer::singleShot(0, &loop, &QEventLoop::quit); });
    loop.exec();
}

} // namespace

class tst_ScriptSound : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_files.write(text("garbage.wav"), "RIFF, or so");
        QVERIFY(QDir().mkpath(m_files.path(text("project/sounds"))));
        QVERIFY(QDir().mkpath(m_files.path(text("elsewhere"))));
        m_sound = makeSoundFile(m_files.path(text("project/sounds/tone.wav")), 22050, 1, 16, 4000);
        m_other = makeSoundFile(m_files.path(text("elsewhere/other.wav")), 16000, 1, 16, 3000);
        m_long = makeSoundFile(m_files.path(text("project/long.wav")), 22050, 1, 16, 22050 * 60);
    }
    void init()
    {
        m_heard.clear();
        m_page = std::make_unique<ScriptPage>();
        m_page->engine.setFolder(m_files.path(text("project")));
        m_page->core.scadaCoreInterface()->setTTSInterface(&m_front);
        m_voice.forget();
    }
    void cleanup() { m_page.reset(); }

    void aSoundIsPlayedOnceTheScriptHasEnded_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isOther");
        QTest::newRow("as seen from the project's folder") << text("sounds/tone.wav") << false;
        QTest::newRow("above the folder") << text("../elsewhere/other.wav") << true;
        QTest::newRow("by its whole path") << m_files.path(text("elsewhere/other.wav")) << true;
    }
    void aSoundIsPlayedOnceTheScriptHasEnded()
    {
        QFETCH(const QString, name);
        QFETCH(const bool, isOther);
        const SoundFile& file = isOther ? m_other : m_sound;
        QCOMPARE(m_page->run(text("from korvane import sound\nsound.play('%1')\nprint('played')").arg(name)),
                 text("played"));
        QVERIFY(m_heard.sounds().isEmpty()); // no event came between
        QTRY_COMPARE(m_heard.sounds().size(), 1);
        QCOMPARE(m_heard.last().format, text("%1 1 S16_LE").arg(file.rate));
        QTRY_VERIFY(!m_heard.samples().isEmpty());
        m_page.reset(); // the end of a sound comes with the end of its output
        QVERIFY(file.samples.startsWith(m_heard.samples()));
    }

    void theWholeSoundIsHeard()
    {
        QCOMPARE(m_page->run("sound.play('sounds/tone.wav')"), QString());
        QTRY_COMPARE(m_heard.samples().size(), m_sound.samples.size() - lastTenth);
        m_page->run("sound.stop()");
        QTRY_VERIFY(m_heard.samples() == m_sound.samples);
    }

    void aScriptThatTurnsTheEventLoopHearsNothingMeanwhile()
    {
        // A handler of the output runs an event loop while the script prints: the sound waits for the script's end.
        QStringList order;
        QObject::connect(&m_page->engine, &ScriptEngine::stdOut, [this, &order](const QString& printed) {
            letPass();
            order.append(printed.trimmed() + text(" %1").arg(m_voice.said().size()));
        });
        m_page->run("speech.say('now')\nsound.play('sounds/tone.wav')\nprint('first')");
        QVERIFY(order.contains(text("first 0")));
        QVERIFY(m_heard.sounds().isEmpty());
        QTRY_COMPARE(m_voice.said(), QStringList{text("ENG now")});
        QTRY_COMPARE(m_heard.sounds().size(), 1);
    }

    void soundsThatAreNotThereAreRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("no such file") << text("sounds/nowhere.wav");
        QTest::newRow("a folder") << text("sounds");
        QTest::newRow("the project's folder") << QString();
        QTest::newRow("as seen from the working folder") << text("tone.wav");
    }
    void soundsThatAreNotThereAreRefused()
    {
        QFETCH(const QString, name);
        const QString before = QDir::currentPath();
        const auto back = qScopeGuard([&before] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(m_files.path(text("project/sounds"))));
        const QString error = m_page->run(text("sound.play('%1')").arg(name));
        QVERIFY2(error.contains(text("FileNotFoundError: there is no sound file \"%1\"").arg(name)), qPrintable(error));
        QCOMPARE(m_page->run(
                     text("try:\n\tsound.play('%1')\nexcept FileNotFoundError as error:\n\tprint('caught')").arg(name)),
                 text("caught"));
        letPass();
        QVERIFY(m_heard.sounds().isEmpty());
    }

    void wrongArgumentsAreRefused_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("error");
        QTest::newRow("a file that is a number") << text("sound.play(1)") << text("TypeError");
        QTest::newRow("no file") << text("sound.play()") << text("TypeError");
        QTest::newRow("something to stop") << text("sound.stop(1)") << text("TypeError");
        QTest::newRow("a message that is a number") << text("speech.say(5)") << text("TypeError");
        QTest::newRow("an unknown language")
            << text("speech.say('a', 'de')") << text("ValueError: \"de\" is no language of a voice: \"en\" or \"ko\"");
        QTest::newRow("a language in capitals")
            << text("speech.say('a', 'EN')") << text("ValueError: \"EN\" is no language of a voice: \"en\" or \"ko\"");
        QTest::newRow("an empty language") << text("speech.say('a', language='')")
                                           << text("ValueError: \"\" is no language of a voice: \"en\" or \"ko\"");
        QTest::newRow("a language that is none") << text("speech.say('a', None)") << text("TypeError");
    }
    void wrongArgumentsAreRefused()
    {
        QFETCH(const QString, call);
        QFETCH(const QString, error);
        const QString told = m_page->run(call);
        QVERIFY2(told.contains(error), qPrintable(told));
        letPass();
        QVERIFY(m_heard.sounds().isEmpty());
        QCOMPARE(m_voice.said(), QStringList());
    }

    void aSoundEndsTheOneBefore()
    {
        m_page->run("sound.play('long.wav')");
        QTRY_VERIFY(!m_heard.samples().isEmpty());
        m_page->run("sound.play('sounds/tone.wav')");
        QTRY_COMPARE(m_heard.sounds().size(), 2);
        QVERIFY(m_heard.sounds()[0].samples.size() < m_long.samples.size());
        QVERIFY(m_long.samples.startsWith(m_heard.sounds()[0].samples));
        QVERIFY(m_sound.samples.startsWith(m_heard.samples()));
    }

    void whatIsNoSoundIsNotHeard()
    {
        QCOMPARE(m_page->run("sound.play('../garbage.wav')"), QString());
        letPass();
        QVERIFY(m_heard.sounds().isEmpty());
        QCOMPARE(m_page->failures, QStringList());
    }

    void aSoundIsStopped()
    {
        m_page->run("sound.stop()"); // nothing is played
        m_page->run("sound.play('long.wav')");
        QTRY_VERIFY(!m_heard.samples().isEmpty());
        m_page->run("sound.stop()\nprint('stopped')");
        letPass();
        const int length = m_heard.samples().size();
        QVERIFY(length < m_long.samples.size());
        m_page->run("sound.play('sounds/tone.wav')\nsound.stop()"); // in their order
        letPass();
        letPass();
        QTRY_VERIFY(m_heard.sounds().size() <= 2);
        m_page->run("sound.play('long.wav')"); // begins anew
        QTRY_VERIFY(m_heard.samples().size() > length);
        QVERIFY(m_long.samples.startsWith(m_heard.samples()));
    }

    void theAlarmsOwnPlayerIsNotTouched()
    {
        WavePlayer* alarms = WavePlayer::instance();
        alarms->play(m_long.path);
        QTRY_COMPARE(alarms->state(), QAudio::ActiveState);
        m_page->run("sound.play('sounds/tone.wav')");
        QTRY_COMPARE(m_heard.sounds().size(), 2);
        m_page->run("sound.stop()");
        letPass();
        QCOMPARE(alarms->state(), QAudio::ActiveState);
        alarms->reset();
    }

    void theEndOfTheEngineEndsTheSound()
    {
        m_page->run("sound.play('long.wav')");
        QTRY_VERIFY(!m_heard.samples().isEmpty());
        m_page.reset();
        const int length = m_heard.samples().size();
        letPass();
        QCOMPARE(m_heard.samples().size(), length);
        init();
        m_page->run("sound.play('long.wav')\nspeech.say('too late')");
        m_page.reset(); // before it begins
        letPass();
        QVERIFY(m_heard.sounds().isEmpty());
        QCOMPARE(m_voice.said(), QStringList());
    }

    void aMessageIsSpokenOnceTheScriptHasEnded()
    {
        QCOMPARE(m_page->run("from korvane import speech\nspeech.say('pump stopped')\nspeech.say('펌프 정지', 'ko')\n"
                             "speech.say(language='en', message='')\nprint('said')"),
                 text("said"));
        QCOMPARE(m_voice.said(), QStringList());
        QTRY_COMPARE(m_voice.said(), (QStringList{text("ENG pump stopped"), text("KOR 펌프 정지"), text("ENG ")}));
    }

    void aScriptThatFailsLaterIsHeardAllTheSame()
    {
        const QString error = m_page->run("speech.say('a')\n1 / 0");
        QVERIFY2(error.contains(text("ZeroDivisionError")), qPrintable(error));
        QTRY_COMPARE(m_voice.said(), QStringList{text("ENG a")});
    }

    void aSystemWithoutAVoiceSaysSo()
    {
        m_page->core.scadaCoreInterface()->setTTSInterface(nullptr);
        const QString error = m_page->run("speech.say('a')");
        QVERIFY2(error.contains(text("RuntimeError: this system has no voice")), qPrintable(error));
    }

private:
    HeardSound m_heard; // before the application
    TemporaryFiles m_files;
    SoundFile m_sound;
    SoundFile m_other;
    SoundFile m_long;
    WrittenSpeech m_voice;
    KorvaneTTSInterface m_front{nullptr};
    std::unique_ptr<ScriptPage> m_page;
};

int main(int argc, char** argv)
{
    tst_ScriptSound test;
    const QApplication application(argc, argv);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_scriptsound.moc"
