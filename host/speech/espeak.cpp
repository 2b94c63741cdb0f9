#include "host/speech/espeak_p.h"

#include <QMutexLocker>

#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <clocale>
#include <string>

namespace {

/// What the callback of a running synthesis works on.
struct Synthesis
{
    const std::function<bool()>& goesOn;
    int pauseMs;
    QByteArray sound;
    qint64 spokenSamples = 0; // without the pauses that were added
    bool hasSentence = false;
};

constexpr int bytesASample = 2;

const char* voiceName(SpeechLanguage language)
{
    return language == SpeechLanguage::Korean ? "ko" : "en";
}

bool isSilent(const QByteArray& sound)
{
    return std::all_of(sound.begin(), sound.end(), [](char byte) { return byte == 0; });
}

void appendSamples(Synthesis& synthesis, const short* samples, qint64 count)
{
    synthesis.sound.append(reinterpret_cast<const char*>(samples), static_cast<int>(count * bytesASample));
    synthesis.spokenSamples += count;
}

/// Every sentence but the first begins after the added silence.
void beginSentence(Synthesis& synthesis)
{
    if (synthesis.hasSentence) {
        const int samples = Espeak::sampleRate * synthesis.pauseMs / 1000;
        synthesis.sound.append(QByteArray(samples * bytesASample, 0));
    }
    synthesis.hasSentence = true;
}

int take(short* samples, int count, espeak_EVENT* events)
{
    auto& synthesis = *static_cast<Synthesis*>(events->user_data);
    qint64 done = 0;
    for (const espeak_EVENT* event = events; event->type != espeakEVENT_LIST_TERMINATED; ++event) {
        if (event->type != espeakEVENT_SENTENCE)
            continue;
        const qint64 place = qint64(event->audio_position) * Espeak::sampleRate / 1000 - synthesis.spokenSamples;
        const qint64 before = qBound<qint64>(0, place, count - done);
        appendSamples(synthesis, samples + done, before);
        done += before;
        beginSentence(synthesis);
    }
    if (samples)
        appendSamples(synthesis, samples + done, count - done);
    return synthesis.goesOn() ? 0 : 1;
}

} // namespace

Espeak::Espeak()
{
    // espeak-ng puts the whole program into a locale of its own, in which file names and texts of others would be read.
    const char* given = std::setlocale(LC_CTYPE, nullptr);
    const std::string before = given ? given : "C";
    m_hasStarted = espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr, espeakINITIALIZE_DONT_EXIT) == sampleRate;
    std::setlocale(LC_CTYPE, before.c_str());
    if (m_hasStarted)
        espeak_SetSynthCallback(take);
}

Espeak& Espeak::instance()
{
    static Espeak espeak;
    return espeak;
}

SpeechEntryPoints::Result Espeak::status(SpeechLanguage language)
{
    const QMutexLocker locked(&m_mutex);
    if (!m_hasStarted)
        return SpeechEntryPoints::NoData;
    return hasVoice(language) ? SpeechEntryPoints::Success : SpeechEntryPoints::NoVoice;
}

QByteArray Espeak::synthesise(const SpeechRequest& request, const std::function<bool()>& goesOn)
{
    const QMutexLocker locked(&m_mutex);
    if (!m_hasStarted || !hasVoice(request.language) || request.text.trimmed().isEmpty())
        return {};
    return speak(request, goesOn);
}

bool Espeak::hasVoice(SpeechLanguage language)
{
    std::optional<bool>& known = m_hasVoice.at(static_cast<std::size_t>(language));
    if (!known) {
        // A voice whose dictionary is missing can be chosen, and is mute.
        const SpeechRequest probe{language, QStringLiteral("1")};
        known = espeak_SetVoiceByName(voiceName(language)) == EE_OK && !isSilent(speak(probe, [] { return true; }));
    }
    return *known;
}

QByteArray Espeak::speak(const SpeechRequest& request, const std::function<bool()>& goesOn)
{
    espeak_SetVoiceByName(voiceName(request.language));
    espeak_SetParameter(espeakPITCH, request.pitch / 2, 0); // its 50 is the voice's own
    espeak_SetParameter(espeakRATE, espeakRATE_NORMAL * request.speed / 100, 0);
    espeak_SetParameter(espeakVOLUME, request.volume, 0);
    const QByteArray text = request.text.toUtf8();
    Synthesis synthesis{goesOn, request.pauseMs, {}};
    espeak_Synth(text.constData(), static_cast<size_t>(text.size()) + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8, nullptr,
                 &synthesis);
    return synthesis.sound;
}
