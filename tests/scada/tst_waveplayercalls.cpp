#include "scada/audio/waveplayer.h"
#include "tests/scada/playedsounds.h"

#include <QAudioOutput>
#include <QPointer>
#include <QtTest>

#include <cstring>

// Calls of a player from within its calls: what it tells and what is pending reaches slots that do something with it.
class tst_WavePlayerCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_sounds.heard.clear(); }

    void whoIsToldMayDoAnything_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("reaction");
        QTest::addColumn<QString>("result"); // what plays in the end: a name of a file, "" without one, or "gone"
        const auto row = [](const char* call, const char* reaction, const char* result) {
            QTest::addRow("%s, and in it %s", call, reaction)
                << QString::fromLatin1(call) << QString::fromLatin1(reaction) << QString::fromLatin1(result);
        };
        for (const char* call : {"play other", "replay"}) {
            const char* its = std::strcmp(call, "replay") == 0 ? "long" : "other";
            row(call, "play short", "short"); // the later one stays
            row(call, "play other", "other");
            row(call, "play missing", its);
            row(call, "replay", its);
            row(call, "stop", its);
            row(call, "reset", "");
            row(call, "reset and play short", "short");
            row(call, "quit", its);
            row(call, "delete", "gone");
        }
        for (const char* reaction :
             {"play short", "play missing", "replay", "stop", "reset", "reset and play short", "quit"})
            row("reset", reaction, "");
        row("reset", "delete", "gone");
    }

    void whoIsToldMayDoAnything()
    {
        QFETCH(const QString, call);
        QFETCH(const QString, reaction);
        QFETCH(const QString, result);
        QPointer<WavePlayer> player = new WavePlayer;
        player->play(m_sounds.longOne.path);
        once(player, stopped, [&] { act(player, reaction); });
        act(player, call);
        checkResult(player, result);
        delete player;
    }

    void whateverIsPendingMayDoAnything_data() { whoIsToldMayDoAnything_data(); }

    void whateverIsPendingMayDoAnything()
    {
        QFETCH(const QString, call);
        QFETCH(const QString, reaction);
        QFETCH(const QString, result);
        QPointer<WavePlayer> player = new WavePlayer;
        player->play(m_sounds.longOne.path);
        QTimer::singleShot(0, player, [&] { act(player, reaction); });
        act(player, call);
        checkResult(player, result);
        delete player;
    }

    void theFirstSoundMayBeOverruled_data()
    {
        QTest::addColumn<QString>("reaction");
        QTest::addColumn<QString>("result");
        QTest::newRow("by another") << "play short"
                                    << "short";
        QTest::newRow("by a reset") << "reset"
                                    << "";
        QTest::newRow("by the player's end") << "delete"
                                             << "gone";
    }

    void theFirstSoundMayBeOverruled()
    {
        QFETCH(const QString, reaction);
        QFETCH(const QString, result);
        QPointer<WavePlayer> player = new WavePlayer;
        QTimer::singleShot(0, player, [&] { act(player, reaction); });
        player->play(m_sounds.longOne.path);
        checkResult(player, result);
        delete player;
    }

    void theEndAndTheBeginningMayBeAnsweredByAnything_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("reaction");
        QTest::addColumn<QString>("result");
        for (const QAudio::State state : {active, idle}) {
            const char* name = state == active ? "the beginning" : "the end";
            QTest::addRow("%s: the next tone", name) << int(state) << "play other"
                                                     << "other";
            QTest::addRow("%s: the same tone", name) << int(state) << "play short"
                                                     << "short";
            QTest::addRow("%s: once more", name) << int(state) << "replay"
                                                 << "short";
            QTest::addRow("%s: a reset", name) << int(state) << "reset"
                                               << "";
            QTest::addRow("%s: a reset and the same tone", name) << int(state) << "reset and play short"
                                                                 << "short";
            QTest::addRow("%s: the player's end", name) << int(state) << "delete"
                                                        << "gone";
        }
    }

    void theEndAndTheBeginningMayBeAnsweredByAnything()
    {
        QFETCH(const int, state);
        QFETCH(const QString, reaction);
        QFETCH(const QString, result);
        QPointer<ShowingPlayer> player = new ShowingPlayer;
        QPointer<QObject> output;
        bool hasReacted = false;
        bool outputWasThere = false;
        once(player, QAudio::State(state), [&] {
            output = player->tellingOutput();
            act(player.data(), reaction);
            hasReacted = true;
            outputWasThere = !output.isNull();
        });
        player->play(m_sounds.shortOne.path);
        QTRY_VERIFY(hasReacted);
        QVERIFY2(outputWasThere, "an output that is telling its state must not be deleted before it has done so");
        checkResult(player, result);
        if (reaction != QLatin1String("replay") && reaction != QLatin1String("play short"))
            QTRY_VERIFY(!output);
        delete player;
    }

    void aSoundThatIsResetWhileItsStateIsToldIsSilent()
    {
        ShowingPlayer player;
        QPointer<QObject> output;
        QList<int> later;
        once(&player, active, [&] {
            output = player.tellingOutput();
            player.reset();
            connect(qobject_cast<QAudioOutput*>(output.data()), &QAudioOutput::stateChanged, this,
                    [&](QAudio::State state) { later.append(state); });
        });
        player.play(m_sounds.longOne.path);
        QTRY_VERIFY(!output);
        QVERIFY(later.isEmpty());
        QVERIFY(m_sounds.heard.sounds().isEmpty());
    }

    void anOutputThatIsReplacedReadsNoMoreHoweverItWasStartedAgain()
    {
        ShowingPlayer player;
        QPointer<QAudioOutput> output;
        once(&player, stopped, [&] {
            output = qobject_cast<QAudioOutput*>(player.tellingOutput());
            player.replay();
            QCOMPARE(output->state(), active);
        });
        player.play(m_sounds.longOne.path);
        player.play(m_sounds.shortOne.path);
        QVERIFY(output);
        QCOMPARE(output->state(), stopped);
        endAndClose(player);
        QCOMPARE(m_sounds.heard.sounds().size(), 1);
        QCOMPARE(m_sounds.heard.samples(), m_sounds.shortOne.samples);
    }

private:
    void act(WavePlayer* player, const QString& name) const
    {
        if (name.startsWith(QLatin1String("reset")))
            player->reset();
        if (name == QLatin1String("replay"))
            player->replay();
        else if (name == QLatin1String("stop"))
            player->stop();
        else if (name == QLatin1String("delete"))
            delete player;
        else if (name == QLatin1String("quit"))
            QCoreApplication::quit();
        else if (name.contains(QLatin1String("play ")))
            player->play(m_sounds.files.path(name.section(QLatin1Char(' '), -1) + QStringLiteral(".wav")));
    }

    void checkResult(WavePlayer* player, const QString& result) const
    {
        QCOMPARE(player == nullptr, result == QLatin1String("gone"));
        if (!player)
            return;
        QCOMPARE(player->state(), result.isEmpty() ? idle : active);
        if (result == QLatin1String("short") || result == QLatin1String("other")) {
            endAndClose(*player);
            const SoundFile& file = result == QLatin1String("short") ? m_sounds.shortOne : m_sounds.other;
            QCOMPARE(m_sounds.heard.last().format, QStringLiteral("%1 1 S16_LE").arg(file.rate));
            QCOMPARE(m_sounds.heard.samples(), file.samples);
        }
        player->reset();
        player->replay();
        QCOMPARE(player->state(), idle);
    }

    PlayedSounds m_sounds;
};

QTEST_MAIN(tst_WavePlayerCalls)
#include "tst_waveplayercalls.moc"
