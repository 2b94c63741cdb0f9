#include "scada/audio/waveplayer.h"
#include "tests/scada/playedsounds.h"

#include <QAudioOutput>
#include <QBuffer>
#include <QPointer>
#include <QtTest>

#include <cstring>

namespace {

/// Has an event pending at all times: each one that is delivered posts the next, which the same delivery leaves for later.
class Deliveries : public QObject
{
public:
    explicit Deliveries(const WavePlayer& player) : m_player(player) { post(); }

    /// What the player's state was at each.
    const States& states() const { return m_states; }

protected:
    void customEvent(QEvent*) override
    {
        m_states.append(m_player.state());
        post();
    }

private:
    void post() { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }

    const WavePlayer& m_player;
    States m_states;
};

} // namespace

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

    void nobodyHearsOfAnOutputThatWasReplaced()
    {
        ShowingPlayer player;
        QPointer<QAudioOutput> output;
        States told;
        bool isEndTold = false;
        const QObject hearer;
        once(&player, active, [&] { output = qobject_cast<QAudioOutput*>(player.tellingOutput()); });
        player.play(m_sounds.longOne.path);
        QVERIFY(output);
        connect(output, &QAudioOutput::stateChanged, &hearer, [&](QAudio::State state) { told.append(state); });
        connect(output, &QObject::destroyed, &hearer, [&] { isEndTold = true; });
        player.play(m_sounds.shortOne.path);
        QCOMPARE(told, States({stopped})); // before it was replaced

        Listener listener(player);
        QBuffer nothing;
        QVERIFY(nothing.open(QIODevice::ReadOnly));
        output->start(&nothing);
        QCOMPARE(output->state(), active);
        output->stop();
        QCOMPARE(told, States({stopped}));
        QCOMPARE(listener.take(), States());
        QTRY_VERIFY(!output);
        QVERIFY(!isEndTold);
    }

    void anOutputBelongsToNoObject()
    {
        ShowingPlayer player;
        QPointer<QObject> output;
        once(&player, active, [&] { output = player.tellingOutput(); });
        player.play(m_sounds.longOne.path);
        QVERIFY(output);
        QVERIFY(!output->parent());
        QVERIFY(player.children().isEmpty());
    }

    void whatIsPendingIsDeliveredOnceForEachStop_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("call");
        QTest::addColumn<States>("states"); // of the player at each delivery
        const auto row = [](const char* name, const char* before, const char* call, const States& states) {
            QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(call) << states;
        };
        row("the first sound's new output", "", "play long", {stopped});
        row("another sound: the output before and the new one", "play long", "play other", {stopped, stopped});
        row("another sound after the end", "end of short", "play other", {stopped, stopped});
        row("the same sound", "play long", "play long", {stopped});
        row("the same sound after the end stops nothing", "end of short", "play short", {});
        row("a replay", "play long", "replay", {stopped});
        row("a replay after the end stops nothing", "end of short", "replay", {});
        row("a replay without a sound", "", "replay", {});
        // Qt's output for ALSA delivers once more in its destructor: the player has none by then.
        row("a reset", "play long", "reset", {stopped, idle});
        row("a reset after the end", "end of short", "reset", {stopped, idle});
        row("a reset without a sound", "", "reset", {});
        row("a file that is not there", "play long", "play missing", {});
        row("a stop delivers nothing", "play long", "stop", {});
    }

    void whatIsPendingIsDeliveredOnceForEachStop()
    {
        QFETCH(const QString, before);
        QFETCH(const QString, call);
        WavePlayer player;
        if (before == QLatin1String("end of short")) {
            player.play(m_sounds.shortOne.path);
            QTRY_COMPARE(player.state(), idle);
        } else {
            act(&player, before);
        }
        const Deliveries deliveries(player);
        act(&player, call);
        QTEST(deliveries.states(), "states");
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
