#pragma once

#include <QAudioOutput>
#include <QBuffer>
#include <QObject>

/// Plays one sound at a time on the default audio output.
class SpeechPlayer : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(SpeechPlayer)

public:
    SpeechPlayer();
    ~SpeechPlayer() override;

    /// Whether there is an output that can be opened, and an application whose events feed it.
    static bool hasOutput();

    /// Plays 16-bit mono sound in place of what is played; a held player takes it and waits.
    void play(const QByteArray& sound);
    /// Ends the sound, also a held one.
    void stop();
    /// Holds the sound, or the next one when none is played.
    void pause();
    /// Goes on where it was held.
    void resume();

private:
    void endWhenPlayed(QAudio::State state);

    QAudioOutput m_output;
    QBuffer m_sound; ///< open while a sound is played or held
    bool m_isHeld = false;
};
