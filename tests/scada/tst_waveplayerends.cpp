#include "scada/audio/waveplayer.h"
#include "tests/scada/playedsounds.h"

#include <QProcess>
#include <QtTest>

#include <cstring>
#include <memory>
#include <utility>

// How players end with the application. Each case is a program of its own: this one, started anew with other arguments.
class tst_WavePlayerEnds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void programsEnd_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("the sound that plays ends with the application") << QStringLiteral("ends-while-playing");
        QTest::newRow("a sound that follows the end of another does too") << QStringLiteral("ends-in-a-sequence");
        QTest::newRow("an application without the library's player ends")
            << QStringLiteral("ends-with-an-extra-player");
        QTest::newRow("every extra player has the library's own reset once more")
            << QStringLiteral("ends-with-several-players");
        QTest::newRow("without audio device nothing sounds") << QStringLiteral("has-no-device");
    }

    void programsEnd()
    {
        QFETCH(const QString, program);
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("program"), program, m_sounds.longOne.path, m_sounds.shortOne.path});
        QVERIFY(process.waitForFinished());
        const QByteArray output = process.readAll();
        QVERIFY2(process.exitStatus() == QProcess::NormalExit, output.constData());
        QVERIFY2(process.exitCode() == 0, QByteArray::number(process.exitCode()) + ' ' + output);
    }

private:
    PlayedSounds m_sounds;
};

namespace {

// The programs return what main() returns: 0 when all went well.

int endWithAnExtraPlayer(std::unique_ptr<QCoreApplication> application, const QString& sound)
{
    WavePlayer extra;
    extra.play(sound);
    application.reset();
    return extra.state() == active ? 0 : 1; // only the library's own is reset
}

// What the probes below need: routines of the application's end are plain functions.
QString probedSound;
int resetsSeen = 0;

/// Sees whether the routine before has reset the library's player, and gives the next one something to reset.
void probe()
{
    WavePlayer* player = WavePlayer::instance();
    resetsSeen += player->state() == idle ? 1 : 0;
    player->play(probedSound);
}

/// The application's end runs its routines from the last one to the first.
int endWithSeveralPlayers(std::unique_ptr<QCoreApplication> application, const QString& sound)
{
    probedSound = sound;
    WavePlayer* player = WavePlayer::instance();
    qAddPostRoutine(probe);
    const WavePlayer extra;
    qAddPostRoutine(probe);
    std::make_unique<WavePlayer>().reset(); // one that is gone by then
    player->play(sound);
    if (player->state() != active)
        return 2;
    application.reset();
    if (resetsSeen != 2)
        return 4;
    return player->state() == idle ? 0 : 3;
}

int endWhilePlaying(std::unique_ptr<QCoreApplication> application, const QString& sound, const QString& following)
{
    WavePlayer* player = WavePlayer::instance();
    if (!following.isEmpty()) {
        QObject::connect(player, &WavePlayer::stateChanged, player, [=](QAudio::State state) {
            if (state == stopped)
                player->play(following);
        });
    }
    player->play(sound);
    if (player->state() != active)
        return 2;
    application.reset();
    return player->state() == idle ? 0 : 3;
}

/// A program whose application ends while something plays.
int end(int argc, char* argv[])
{
    const QByteArray program(argv[2]);
    const QString longSound = QString::fromLocal8Bit(argv[3]);
    const QString shortSound = QString::fromLocal8Bit(argv[4]);
    auto application = std::make_unique<QCoreApplication>(argc, argv);
    const HeardSound heard;
    if (program == "ends-with-an-extra-player")
        return endWithAnExtraPlayer(std::move(application), longSound);
    if (program == "ends-with-several-players")
        return endWithSeveralPlayers(std::move(application), longSound);
    return endWhilePlaying(std::move(application), longSound, program == "ends-in-a-sequence" ? shortSound : QString());
}

/// A program on a machine that can't sound.
int playWithoutDevice(int argc, char* argv[])
{
    QCoreApplication::setLibraryPaths({QStringLiteral("/dev/null")});
    const QCoreApplication application(argc, argv);
    QCoreApplication::setLibraryPaths({QStringLiteral("/dev/null")});
    WavePlayer player;
    for (int i = 3; i < argc; ++i) {
        player.play(QString::fromLocal8Bit(argv[i]));
        if (player.state() != stopped)
            return i;
        player.replay();
        player.stop();
        QCoreApplication::processEvents();
    }
    player.reset();
    return player.state() == idle ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc == 5 && std::strcmp(argv[1], "program") == 0) {
        const bool hasDevice = std::strcmp(argv[2], "has-no-device") != 0;
        return hasDevice ? end(argc, argv) : playWithoutDevice(argc, argv);
    }
    const QCoreApplication application(argc, argv);
    tst_WavePlayerEnds test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_waveplayerends.moc"
