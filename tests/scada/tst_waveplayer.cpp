#include "scada/audio/waveplayer.h"
#include "tests/scada/playedsounds.h"
#include "tests/support/markingtranslator.h"

#include <QDir>
#include <QMetaMethod>
#include <QPointer>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <memory>

class tst_WavePlayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_sounds.heard.clear(); }

    void aPlayerWithoutSoundDoesNothing()
    {
        WavePlayer player;
        Listener listener(player);
        QCOMPARE(player.state(), idle);
        player.stop();
        player.replay();
        player.reset();
        QCOMPARE(player.state(), idle);
        QVERIFY(listener.take().isEmpty());
        QVERIFY(m_sounds.heard.sounds().isEmpty());
        QVERIFY(!player.parent());
    }

    void whatIsHeardIsWhatSoxReads_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("bits");
        QTest::addColumn<QString>("format");
        const auto row = [](int rate, int channels, int bits, const char* format) {
            QTest::addRow("%d Hz, %d channels, %d bits", rate, channels, bits)
                << rate << channels << bits
                << QStringLiteral("%1 %2 %3").arg(rate).arg(channels).arg(QLatin1String(format));
        };
        row(8000, 1, 8, "U8");
        row(11025, 2, 8, "U8");
        row(8000, 1, 16, "S16_LE");
        row(22050, 2, 16, "S16_LE");
        row(44100, 2, 16, "S16_LE");
        row(96000, 1, 16, "S16_LE");
        // The bytes are those of the file. That Qt gives ALSA samples of three bytes as ones of four is Qt's matter.
        row(48000, 1, 24, "S24_LE");
        row(48000, 2, 24, "S24_LE");
        row(44100, 1, 32, "S32_LE");
        row(96000, 2, 32, "S32_LE");
    }

    void whatIsHeardIsWhatSoxReads()
    {
        QFETCH(const int, rate);
        QFETCH(const int, channels);
        QFETCH(const int, bits);
        QFETCH(const QString, format);
        const SoundFile file =
            makeSoundFile(m_sounds.files.path(QStringLiteral("sox.wav")), rate, channels, bits, rate / 20 * 4);
        QCOMPARE(file.samples.size(), rate / 20 * 4 * channels * bits / 8);
        WavePlayer player;
        player.play(file.path);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.sounds().size(), 1);
        QCOMPARE(m_sounds.heard.last().format, format);
        QCOMPARE(m_sounds.heard.samples(), file.samples);
    }

    void bigEndianSamplesAreHeard()
    {
        const QByteArray samples = sox(QStringLiteral("-D %1 -t raw -B -").arg(m_sounds.shortOne.path));
        QVERIFY(samples != m_sounds.shortOne.samples);
        const QString path = m_sounds.files.write(QStringLiteral("big.wav"),
                                                  waveHeader("RIFX") + waveChunk("fmt ", waveFormat(1, 16000, 16)) +
                                                      waveChunk("data", samples));
        WavePlayer player;
        player.play(path);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.last().format, QStringLiteral("16000 1 S16_BE"));
        QCOMPARE(m_sounds.heard.samples(), samples);
    }

    void otherChunksAreNotHeard()
    {
        const QString path = m_sounds.files.write(
            QStringLiteral("chunks.wav"), waveHeader() + waveChunk("LIST", QByteArray(1000, 'l')) +
                                              waveChunk("fmt ", waveFormat(1, 16000, 16) + QByteArray(24, 'x')) +
                                              waveChunk("fact", "fact") + waveChunk("data", m_sounds.shortOne.samples) +
                                              waveChunk("LIST", QByteArray(1000, 'l')));
        WavePlayer player;
        player.play(path);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples);
    }

    void whatIsThereOfACutFileIsHeard()
    {
        const QString path = m_sounds.files.write(QStringLiteral("cut.wav"),
                                                  waveHeader() + waveChunk("fmt ", waveFormat(1, 16000, 16)) +
                                                      waveChunk("data", 0xFFFFFFFF, m_sounds.shortOne.samples));
        WavePlayer player;
        player.play(path);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples);
    }

    void aSoundWithoutSamplesEnds()
    {
        const QString path =
            m_sounds.files.write(QStringLiteral("empty.wav"),
                                 waveHeader() + waveChunk("fmt ", waveFormat(1, 16000, 16)) + waveChunk("data", ""));
        WavePlayer player;
        Listener listener(player);
        player.play(path);
        QTRY_COMPARE(player.state(), idle);
        QCOMPARE(listener.take(), States({active, idle}));
        player.stop();
        QVERIFY(m_sounds.heard.sounds().isEmpty());
    }

    void aSoundIsPlayedOnce()
    {
        WavePlayer player;
        Listener listener(player);
        player.play(m_sounds.shortOne.path);
        QCOMPARE(player.state(), active);
        QCOMPARE(listener.states, States({active}));
        QTRY_COMPARE(player.state(), idle);
        // As long as it takes another sound to end, nothing follows.
        WavePlayer other;
        other.play(m_sounds.other.path);
        QTRY_COMPARE(other.state(), idle);
        QCOMPARE(listener.take(), States({active, idle}));
        QCOMPARE(player.state(), idle);
    }

    void theSamePathPlaysAgainFromMemory()
    {
        const QString path = m_sounds.files.write(QStringLiteral("again.wav"), contentOf(m_sounds.shortOne));
        WavePlayer player;
        Listener listener(player);
        player.play(path);
        QTRY_COMPARE(player.state(), idle);
        QVERIFY(QFile::remove(path));
        player.play(path);
        QCOMPARE(player.state(), active);
        QTRY_COMPARE(player.state(), idle);
        QCOMPARE(listener.take(), States({active, idle, active, idle})); // an idle output is not stopped first
        player.replay();
        endAndClose(player);
        const QList<HeardSound::Sound> sounds = m_sounds.heard.sounds();
        QCOMPARE(sounds.size(), 3);
        for (const HeardSound::Sound& sound : sounds)
            QCOMPARE(sound.samples, m_sounds.shortOne.samples);
    }

    void theSamePathWhileItPlaysStartsFromTheBeginning_data()
    {
        QTest::addColumn<bool>("isReplay");
        QTest::newRow("played again") << false;
        QTest::newRow("replayed") << true;
    }

    void theSamePathWhileItPlaysStartsFromTheBeginning()
    {
        QFETCH(const bool, isReplay);
        const SoundFile file = makeSoundFile(m_sounds.files.path(QStringLiteral("second.wav")), 22050, 1, 16, 22050);
        WavePlayer player;
        Listener listener(player);
        player.play(file.path);
        QTRY_VERIFY(!m_sounds.heard.samples().isEmpty());
        QCOMPARE(player.state(), active);
        isReplay ? player.replay() : player.play(file.path);
        QCOMPARE(player.state(), active);
        QCOMPARE(listener.take(), States({active, stopped, active}));
        endAndClose(player);
        const QList<HeardSound::Sound> sounds = m_sounds.heard.sounds();
        QCOMPARE(sounds.size(), 2);
        QVERIFY(sounds.at(0).samples.size() < file.samples.size());
        QVERIFY(file.samples.startsWith(sounds.at(0).samples));
        QCOMPARE(sounds.at(1).samples, file.samples);
    }

    void onlyTheExactPathIsTheSame()
    {
        WavePlayer player;
        player.play(m_sounds.files.write(QStringLiteral("exact.wav"), contentOf(m_sounds.shortOne)));
        m_sounds.files.write(QStringLiteral("exact.wav"), contentOf(m_sounds.other));
        player.play(m_sounds.files.path(QStringLiteral("./exact.wav")));
        endAndClose(player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.other.samples);
    }

    void aChangedFileIsReadWhenAnotherWasInBetween()
    {
        const QString path = m_sounds.files.write(QStringLiteral("changing.wav"), contentOf(m_sounds.shortOne));
        WavePlayer player;
        player.play(path);
        m_sounds.files.write(QStringLiteral("changing.wav"), contentOf(m_sounds.other));
        player.play(path);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples); // kept in memory
        player.play(m_sounds.longOne.path);
        player.play(path);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.other.samples);
    }

    void aChangedFileIsReadAfterReset()
    {
        const QString path = m_sounds.files.write(QStringLiteral("changing.wav"), contentOf(m_sounds.shortOne));
        WavePlayer player;
        player.play(path);
        m_sounds.files.write(QStringLiteral("changing.wav"), contentOf(m_sounds.other));
        player.reset();
        player.play(path);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.last().format, QStringLiteral("8000 1 S16_LE"));
        QCOMPARE(m_sounds.heard.samples(), m_sounds.other.samples);
    }

    void anotherFileEndsTheSoundBefore()
    {
        WavePlayer player;
        Listener listener(player);
        player.play(m_sounds.longOne.path);
        QTRY_VERIFY(!m_sounds.heard.samples().isEmpty());
        player.play(m_sounds.shortOne.path);
        QCOMPARE(player.state(), active);
        QCOMPARE(listener.take(), States({active, stopped, active}));
        endAndClose(player);
        const QList<HeardSound::Sound> sounds = m_sounds.heard.sounds();
        QCOMPARE(sounds.size(), 2);
        QVERIFY(sounds.at(0).samples.size() < m_sounds.longOne.samples.size());
        QCOMPARE(sounds.at(1).format, QStringLiteral("16000 1 S16_LE"));
        QCOMPARE(sounds.at(1).samples, m_sounds.shortOne.samples);
    }

    void theOutputBeforeIsDeletedLater()
    {
        ShowingPlayer player;
        QPointer<QObject> first;
        once(&player, active, [&] { first = player.tellingOutput(); });
        player.play(m_sounds.longOne.path);
        QVERIFY(first);
        player.play(m_sounds.shortOne.path);
        QVERIFY(first);
        QTRY_VERIFY(!first);
        QCOMPARE(player.state(), active);
    }

    void whatCannotBeReadLeavesTheSound_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("a file that is not there") << m_sounds.files.path(QStringLiteral("missing.wav"));
        QTest::newRow("no name") << QString();
        QTest::newRow("a folder") << m_sounds.files.path({});
        QTest::newRow("no WAV file") << m_sounds.files.write(QStringLiteral("text.wav"), "what a fine sound this is");
        QTest::newRow("a WAV file without samples' chunk")
            << m_sounds.files.write(QStringLiteral("cut.wav"), contentOf(m_sounds.shortOne).left(40));
    }

    void whatCannotBeReadLeavesTheSound()
    {
        QFETCH(const QString, path);
        WavePlayer player;
        Listener listener(player);
        player.play(path);
        player.play(path);
        QCOMPARE(player.state(), idle);
        QVERIFY(listener.take().isEmpty());

        player.play(m_sounds.shortOne.path);
        player.play(path);
        QCOMPARE(player.state(), active);
        QCOMPARE(listener.states, States({active}));
        endAndClose(player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples);
    }

    void aPathThatFailedPlaysTheSoundBeforeWhenGivenAgain() // kept
    {
        const QString path = m_sounds.files.path(QStringLiteral("later.wav"));
        WavePlayer player;
        player.play(m_sounds.shortOne.path);
        QTRY_COMPARE(player.state(), idle);
        player.play(path);
        QCOMPARE(player.state(), idle);
        m_sounds.files.write(QStringLiteral("later.wav"),
                             contentOf(m_sounds.other)); // not read, although it is there by now
        player.play(path);
        QCOMPARE(player.state(), active);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.sounds().size(), 2);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples);
        QVERIFY(QFile::remove(path));
    }

    void stopKeepsTheSound()
    {
        WavePlayer player;
        Listener listener(player);
        player.play(m_sounds.shortOne.path);
        player.stop();
        QCOMPARE(player.state(), stopped);
        player.stop();
        QCOMPARE(listener.take(), States({active, stopped}));
        player.replay();
        QCOMPARE(listener.take(), States({active}));
        endAndClose(player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples);
        QCOMPARE(listener.take(), States({idle, stopped}));
        player.play(m_sounds.shortOne.path);
        QCOMPARE(player.state(), active);
    }

    void resetForgetsTheSoundAtOnce()
    {
        ShowingPlayer player;
        Listener listener(player);
        QPointer<QObject> output;
        once(&player, active, [&] { output = player.tellingOutput(); });
        player.play(m_sounds.longOne.path);
        QVERIFY(output);
        player.reset();
        QVERIFY(!output);
        QCOMPARE(player.state(), idle);
        QCOMPARE(listener.take(), States({active, stopped}));
        player.replay();
        QCOMPARE(player.state(), idle);
        player.play(m_sounds.shortOne.path);
        QCOMPARE(player.state(), active);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples);
    }

    void aPlayerThatIsDeletedEndsSilently()
    {
        auto player = std::make_unique<ShowingPlayer>();
        Listener listener(*player);
        QPointer<QObject> output;
        connect(player.get(), &WavePlayer::stateChanged, this, [&] { output = player->tellingOutput(); });
        player->play(m_sounds.longOne.path);
        QTRY_VERIFY(!m_sounds.heard.samples().isEmpty());
        player.reset();
        QVERIFY(!output);
        QCOMPARE(listener.take(), States({active}));
        QVERIFY(m_sounds.longOne.samples.startsWith(m_sounds.heard.samples()));
    }

    void theFileGoesBeforeTheOutput_data()
    {
        QTest::addColumn<bool>("isReset");
        QTest::newRow("with the player") << false;
        QTest::newRow("in a reset") << true;
    }

    void theFileGoesBeforeTheOutput()
    {
#ifndef Q_OS_LINUX
        QSKIP("the system does not list the files that a program has open");
#endif
        QFETCH(const bool, isReset);
        const QString path = m_sounds.longOne.path;
        bool isFileGone = false;
        auto player = std::make_unique<ShowingPlayer>();
        QPointer<QObject> child; // dies with the output
        once(player.get(), active, [&] { child = new QObject(player->tellingOutput()); });
        player->play(path);
        QVERIFY(child);
        QVERIFY(isOpen(path));
        connect(child, &QObject::destroyed, this, [&] { isFileGone = !isOpen(path); });
        if (isReset)
            player->reset();
        else
            player.reset();
        QVERIFY(!child);
        QVERIFY(isFileGone);
    }

    void aPlayerDiesWithItsParent()
    {
        auto parent = std::make_unique<QObject>();
        const QPointer<WavePlayer> player = new WavePlayer(parent.get());
        player->play(m_sounds.longOne.path);
        parent.reset();
        QVERIFY(!player);
    }

    void formatsThatCannotBePlayedStop_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<QString>("warning");
        const auto row = [](const char* name, const QByteArray& format, const char* warning) {
            QTest::newRow(name) << format << QString::fromLatin1(warning);
        };
        row("no channels", waveFormat(0, 8000, 16), "snd_pcm_hw_params_set_channels");
        row("no rate", waveFormat(1, 0, 16), "invalid sample rate");
        row("no bits", waveFormat(1, 8000, 0), "snd_pcm_hw_params_set_format");
        row("a rate beyond an int", waveFormat(1, 0xFFFFFFFF, 16), "invalid format");
        row("12 bits", waveFormat(1, 8000, 12), "snd_pcm_hw_params_set_format");
        row("4 bits", waveFormat(1, 8000, 4, 0x11), "snd_pcm_hw_params_set_format");
    }

    void formatsThatCannotBePlayedStop()
    {
        QFETCH(const QByteArray, format);
        QFETCH(const QString, warning);
        const QString path = m_sounds.files.write(
            QStringLiteral("format.wav"), waveHeader() + waveChunk("fmt ", format) + waveChunk("data", "01234567"));
        WavePlayer player;
        Listener listener(player);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
        player.play(path);
        QCOMPARE(player.state(), stopped);
        QCOMPARE(listener.take(), States({stopped}));
        player.play(m_sounds.shortOne.path);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples);
    }

    void statesCanBeQueued()
    {
        const QMetaMethod signal = QMetaMethod::fromSignal(&WavePlayer::stateChanged);
        QCOMPARE(signal.parameterTypes(), QList<QByteArray>({"QAudio::State"}));
        QVERIFY(signal.parameterType(0) != QMetaType::UnknownType);
        QCOMPARE(QMetaType::typeName(signal.parameterType(0)), "QAudio::State");
        WavePlayer player;
        WavePlayer second;
        Listener listener(second);
        // By text, as hosts connect what they find by name.
        QVERIFY(connect(&player, SIGNAL(stateChanged(QAudio::State)), &second, SIGNAL(stateChanged(QAudio::State)),
                        Qt::QueuedConnection));
        player.play(m_sounds.shortOne.path);
        QVERIFY(listener.states.isEmpty());
        QTRY_COMPARE(listener.states, States({active, idle}));
    }

    void theLibrarysPlayerIsOne()
    {
        WavePlayer* player = WavePlayer::instance();
        QCOMPARE(WavePlayer::instance(), player);
        QVERIFY(!player->parent());
        QCOMPARE(player->thread(), qApp->thread());
        WavePlayer extra;
        QVERIFY(&extra != player);
        player->play(m_sounds.shortOne.path);
        QCOMPARE(extra.state(), idle);
        endAndClose(*player);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples);
        player->reset();
        QCOMPARE(player->state(), idle);
    }

    void textsAreLookedUpUnderTheClass()
    {
        const MarkingTranslator translator;
        QCOMPARE(WavePlayer::tr("volume"), QStringLiteral("WavePlayer::volume"));
        QCOMPARE(translatedFromUtf8<WavePlayer>("volume"), QStringLiteral("WavePlayer::volume"));
    }

private:
    static QByteArray contentOf(const SoundFile& file)
    {
        QFile content(file.path);
        if (!content.open(QIODevice::ReadOnly))
            qFatal("%s: %s", qPrintable(file.path), qPrintable(content.errorString()));
        return content.readAll();
    }

    /// Whether this program has the file open.
    static bool isOpen(const QString& path)
    {
        const QString file = QFileInfo(path).canonicalFilePath();
        const QFileInfoList open = QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files);
        return std::any_of(open.begin(), open.end(),
                           [&](const QFileInfo& info) { return info.symLinkTarget() == file; });
    }

    PlayedSounds m_sounds;
};

QTEST_MAIN(tst_WavePlayer)
#include "tst_waveplayer.moc"
