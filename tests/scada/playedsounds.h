#pragma once

#include "scada/audio/waveplayer.h"
#include "tests/support/heardsound.h"
#include "tests/support/soundfiles.h"
#include "tests/support/temporaryfiles.h"

#include <QAudio>
#include <QCoreApplication>
#include <QList>
#include <QtTest>

#include <functional>
#include <memory>
#include <utility>

constexpr auto active = QAudio::ActiveState;
constexpr auto stopped = QAudio::StoppedState;
constexpr auto idle = QAudio::IdleState;

using States = QList<QAudio::State>;

/// What a player tells.
class Listener : public QObject
{
public:
    explicit Listener(WavePlayer& player)
    {
        connect(&player, &WavePlayer::stateChanged, this, [this](QAudio::State state) { states.append(state); });
    }

    States take() { return std::exchange(states, {}); }

    States states;
};

/// A player that shows the output whose state it is just telling, to slots of others.
class ShowingPlayer : public WavePlayer
{
public:
    QObject* tellingOutput() const { return sender(); }
};

/// Files to play, and what is heard of them.
struct PlayedSounds
{
    HeardSound heard;
    TemporaryFiles files;
    /// Ten seconds, so that it plays on while something is tried.
    SoundFile longOne = makeSoundFile(files.path(QStringLiteral("long.wav")), 22050, 1, 16, 220500);
    // Two that are soon over.
    SoundFile shortOne = makeSoundFile(files.path(QStringLiteral("short.wav")), 16000, 1, 16, 1600);
    SoundFile other = makeSoundFile(files.path(QStringLiteral("other.wav")), 8000, 1, 16, 800);
};

/// Waits for the end of the sound, and closes the device so that all of it was heard.
inline void endAndClose(WavePlayer& player)
{
    QTRY_COMPARE(player.state(), idle);
    player.stop();
}

/// Calls \p reaction when the player first tells \p state.
inline void once(WavePlayer* player, QAudio::State state, const std::function<void()>& reaction)
{
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(player, &WavePlayer::stateChanged, qApp, [=](QAudio::State told) {
        if (told != state)
            return;
        QObject::disconnect(*connection);
        reaction();
    });
}
