#include "host/speech/speaker_p.h"

#include "host/speech/espeak_p.h"

#include <QCoreApplication>

#include <array>
#include <memory>

namespace {

struct Loaded
{
    std::array<int, 2> counts{}; ///< by SpeechLanguage
    std::unique_ptr<Speaker> speaker;

    int& count(SpeechLanguage language) { return counts.at(static_cast<std::size_t>(language)); }
};

Loaded& loaded()
{
    static Loaded loaded;
    return loaded;
}

/// The audio output needs the application; whoever never unloads is unloaded with it.
void unloadAll()
{
    loaded().counts.fill(0);
    loaded().speaker.reset();
}

} // namespace

Speaker::Speaker()
{
    connect(&m_synthesizer, &SpeechSynthesizer::synthesised, &m_player, &SpeechPlayer::play);
}

Speaker::~Speaker() = default;

SpeechEntryPoints::Result Speaker::status(SpeechLanguage language)
{
    const SpeechEntryPoints::Result voice = Espeak::instance().status(language);
    if (voice != SpeechEntryPoints::Success)
        return voice;
    return SpeechPlayer::hasOutput() ? SpeechEntryPoints::Success : SpeechEntryPoints::NoAudioOutput;
}

SpeechEntryPoints::Result Speaker::load(SpeechLanguage language)
{
    const SpeechEntryPoints::Result result = status(language);
    if (result != SpeechEntryPoints::Success)
        return result;
    ++loaded().count(language);
    if (!loaded().speaker) {
        loaded().speaker.reset(new Speaker);
        qAddPostRoutine(unloadAll);
    }
    return result;
}

void Speaker::unload(SpeechLanguage language)
{
    int& count = loaded().count(language);
    if (count == 0 || --count > 0)
        return;
    loaded().speaker->stop(language);
    if (loaded().counts == std::array<int, 2>{}) {
        qRemovePostRoutine(unloadAll);
        loaded().speaker.reset();
    }
}

Speaker* Speaker::of(SpeechLanguage language)
{
    return loaded().count(language) > 0 ? loaded().speaker.get() : nullptr;
}

void Speaker::speak(const SpeechRequest& request)
{
    silence();
    m_language = request.language;
    if (!request.text.trimmed().isEmpty())
        m_synthesizer.start(request);
}

void Speaker::stop(SpeechLanguage language)
{
    if (m_language == language)
        silence();
}

void Speaker::pause(SpeechLanguage language)
{
    if (m_language == language)
        m_player.pause();
}

void Speaker::restart(SpeechLanguage language)
{
    if (m_language == language)
        m_player.resume();
}

void Speaker::silence()
{
    m_synthesizer.cancel();
    m_player.stop();
}
