#include "host/speech/speechplayer_p.h"

#include "host/speech/espeak_p.h"

#include <QAudioDeviceInfo>
#include <QCoreApplication>

namespace {

QAudioFormat format()
{
    QAudioFormat format;
    format.setCodec(QStringLiteral("audio/pcm"));
    format.setSampleRate(Espeak::sampleRate);
    format.setChannelCount(1);
    format.setSampleSize(16);
    format.setSampleType(QAudioFormat::SignedInt);
    format.setByteOrder(QAudioFormat::Endian(QSysInfo::ByteOrder));
    return format;
}

} // namespace

SpeechPlayer::SpeechPlayer() : m_output(format())
{
    // Queued: an output must not be stopped from within its own change of state.
    connect(&m_output, &QAudioOutput::stateChanged, this, &SpeechPlayer::endWhenPlayed, Qt::QueuedConnection);
}

SpeechPlayer::~SpeechPlayer()
{
    stop();
}

bool SpeechPlayer::hasOutput()
{
    return QCoreApplication::instance() && QAudioDeviceInfo::defaultOutputDevice().isFormatSupported(format());
}

void SpeechPlayer::play(const QByteArray& sound)
{
    m_output.reset();
    m_sound.close();
    m_sound.setData(sound);
    m_sound.open(QIODevice::ReadOnly);
    if (!m_isHeld)
        m_output.start(&m_sound);
}

void SpeechPlayer::stop()
{
    m_output.reset(); // drops what the device has not played yet, where stop() would wait for it
    m_sound.close();
    m_isHeld = false;
}

void SpeechPlayer::pause()
{
    m_isHeld = true;
    m_output.suspend();
}

void SpeechPlayer::resume()
{
    m_isHeld = false;
    if (m_output.state() == QAudio::SuspendedState)
        m_output.resume();
    else if (m_sound.isOpen() && m_output.state() == QAudio::StoppedState)
        m_output.start(&m_sound);
}

void SpeechPlayer::endWhenPlayed(QAudio::State state)
{
    // A queued state may be that of the sound before.
    if (state == QAudio::IdleState && m_output.state() == QAudio::IdleState && m_sound.atEnd()) {
        m_output.stop();
        m_sound.close();
    }
}
