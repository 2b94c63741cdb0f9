#include "host/speech/speechsynthesizer_p.h"

#include "host/speech/espeak_p.h"

SpeechSynthesizer::SpeechSynthesizer()
{
    m_worker.moveToThread(&m_thread);
    m_thread.start();
}

SpeechSynthesizer::~SpeechSynthesizer()
{
    cancel();
    m_thread.quit();
    m_thread.wait();
}

void SpeechSynthesizer::start(const SpeechRequest& request)
{
    const quint64 number = ++m_wanted;
    QMetaObject::invokeMethod(
        &m_worker, [this, number, request] { work(number, request); }, Qt::QueuedConnection);
}

void SpeechSynthesizer::cancel()
{
    ++m_wanted;
}

void SpeechSynthesizer::work(quint64 number, const SpeechRequest& request)
{
    if (!isWanted(number))
        return;
    const QByteArray sound = Espeak::instance().synthesise(request, [this, number] { return isWanted(number); });
    const auto announce = [this, number, sound] {
        if (isWanted(number))
            Q_EMIT synthesised(sound);
    };
    QMetaObject::invokeMethod(this, announce, Qt::QueuedConnection);
}
