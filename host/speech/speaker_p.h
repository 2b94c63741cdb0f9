#pragma once

#include "host/speech/speechentrypoints.h"
#include "host/speech/speechexport.h"
#include "host/speech/speechplayer_p.h"
#include "host/speech/speechrequest_p.h"
#include "host/speech/speechsynthesizer_p.h"

#include <QObject>

/// The program's one voice for both languages. It exists while a language is loaded, and not longer than the application.
class KORVANE_SPEECH_EXPORT Speaker : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Speaker)

public:
    ~Speaker() override;

    /// Success, or what keeps the language from being spoken.
    static SpeechEntryPoints::Result status(SpeechLanguage language);
    /// Counts; \returns status().
    static SpeechEntryPoints::Result load(SpeechLanguage language);
    /// The last one for a language ends what is spoken in it, the last of all the voice.
    static void unload(SpeechLanguage language);
    /// The voice, if \p language is loaded; else null.
    static Speaker* of(SpeechLanguage language);

    /// Speaks in place of what is spoken; a text of blanks only ends that.
    void speak(const SpeechRequest& request);
    /// Ends what is spoken in \p language.
    void stop(SpeechLanguage language);
    /// Holds what is spoken in \p language, or is about to be.
    void pause(SpeechLanguage language);
    /// Goes on with what is held in \p language.
    void restart(SpeechLanguage language);

private:
    Speaker();

    void silence();

    SpeechLanguage m_language = SpeechLanguage::English; ///< of the newest message
    SpeechPlayer m_player;
    SpeechSynthesizer m_synthesizer;
};
