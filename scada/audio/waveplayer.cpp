#include "scada/audio/waveplayer.h"

#include "scada/audio/wavfile_p.h"

#include <QAudioOutput>
#include <QCoreApplication>
#include <QPointer>

#include <utility>

namespace {

/// The default device, telling the player its states. It knows while it tells one: Qt goes on in it afterwards, so that it
/// must not be deleted then.
class WaveOutput : public QAudioOutput
{
public:
    WaveOutput(const QAudioFormat& format, WavePlayer* player) : QAudioOutput(format)
    {
        // Slots are called in the order in which they were connected.
        connect(this, &QAudioOutput::stateChanged, this, [this] { ++m_depth; });
        connect(this, &QAudioOutput::stateChanged, player, &WavePlayer::stateChanged);
        connect(this, &QAudioOutput::stateChanged, this, [this] { --m_depth; });
    }

    bool isTelling() const { return m_depth > 0; }

private:
    int m_depth = 0; ///< states that are being told: a slot may cause the next one
};

/// Nobody hears of the output any more, and it no longer reads.
void silence(QAudioOutput* output)
{
    QObject::disconnect(output, nullptr, nullptr, nullptr);
    output->stop(); // whoever was told that it stopped may have started it again
}

} // namespace

WavePlayer::WavePlayer(QObject* parent) : QObject(parent)
{
    qAddPostRoutine([] { WavePlayer::instance()->reset(); });
}

WavePlayer::~WavePlayer()
{
    clear();
}

WavePlayer* WavePlayer::instance()
{
    static WavePlayer player;
    return &player;
}

void WavePlayer::play(const QString& path)
{
    if (!m_waveFile)
        m_waveFile = new WavFile;
    if (m_waveFile->fileName() != path) {
        if (!m_waveFile->load(path))
            return;
        if (m_output) {
            if (!stopAndDeliver())
                return;
            silence(m_output);
            m_output->deleteLater();
        }
        m_output = new WaveOutput(m_waveFile->format(), this);
    }
    replay();
}

void WavePlayer::replay()
{
    if (!m_output || !m_waveFile)
        return;
    if (m_output->state() != QAudio::IdleState && !stopAndDeliver())
        return;
    m_waveFile->samples().seek(0);
    m_output->start(&m_waveFile->samples());
}

void WavePlayer::reset()
{
    const QPointer<WavePlayer> self(this);
    if (m_output)
        stopAndDeliver();
    if (!self)
        return;
    clear();
}

QAudio::State WavePlayer::state() const
{
    return m_output ? m_output->state() : QAudio::IdleState;
}

void WavePlayer::stop()
{
    if (m_output)
        m_output->stop();
}

/// Stops the output, and delivers what is pending once.
/// \returns whether the player and its output are still there: either may be gone or another by what somebody did who was
/// told.
bool WavePlayer::stopAndDeliver()
{
    const QPointer<WavePlayer> self(this);
    const QPointer<QAudioOutput> output(m_output);
    output->stop();
    QCoreApplication::processEvents();
    return self && output && m_output == output;
}

/// Deletes the file, then the output, without telling anybody.
void WavePlayer::clear()
{
    QAudioOutput* const output = std::exchange(m_output, nullptr);
    // Qt's output for PulseAudio delivers events in its destructor, and would go on reading the sound that is gone.
    if (output)
        silence(output);
    delete std::exchange(m_waveFile, nullptr);
    if (output && static_cast<WaveOutput*>(output)->isTelling())
        output->deleteLater();
    else
        delete output;
}
