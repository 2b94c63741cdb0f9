#pragma once

#include "scada/scadaexport.h"

#include <QAudio>
#include <QObject>

class QAudioOutput;
class WavFile;

/// Plays short WAV files, alarm tones, on the default output device: one at a time, each once.
///
/// The samples of the file that was played last stay in memory, so that playing it again does not touch the disk. The
/// player never repeats or goes on by itself: a host that wants the next tone when one has ended waits for
/// stateChanged(QAudio::IdleState). The library's player is instance(); further ones share nothing with it.
///
/// It is silent about failures. What cannot be read is not played; what the device cannot play shows as a state.
///
/// play(), replay() and reset() deliver pending events once, and states are told while they run. Whoever is told may call
/// the player again or delete it. A sound that is played meanwhile stays: the call in which it was played does nothing
/// more; but reset() always leaves the player empty. GUI thread only, but for instance().
class KORVANE_SCADA_EXPORT WavePlayer : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(WavePlayer)

public:
    /// A player beside the library's own. Every player that is made has the library's own reset() once more at the
    /// application's end.
    explicit WavePlayer(QObject* parent = nullptr);
    /// Ends the sound without telling so.
    ~WavePlayer() override;

    /// The library's player. It is made when first asked for, by any thread, and lives to the end of the process; what it
    /// plays ends with the application.
    static WavePlayer* instance();

    /// Ends what is played and plays a file from its first sample.
    ///
    /// A path that is exactly the one given last is not read again, even if the file has changed since; reset(), or
    /// another path in between, has it read. A file that cannot be read or is no WAV file changes nothing: the sound
    /// before goes on. But its path is the last one from then on, so that giving it once more plays that sound before
    /// again (kept).
    void play(const QString& path);
    /// Plays the sound that was played last once more, from its first sample; nothing without one.
    void replay();
    /// Ends what is played and forgets it: what the player holds of the device and of the file is freed.
    void reset();
    /// What the device does: QAudio::StoppedState after stop() and where it could not play, QAudio::IdleState after the
    /// end of a sound and without any.
    QAudio::State state() const;
    /// Ends what is played; replay() and play() of the same path begin it again.
    void stop();

Q_SIGNALS:
    /// The device does something else now.
    void stateChanged(QAudio::State state);

private:
    bool stopAndDeliver();
    void clear();

    QAudioOutput* m_output = nullptr; ///< owned; null until a file could be read
    WavFile* m_waveFile = nullptr;    ///< owned; null until the first play()
};
