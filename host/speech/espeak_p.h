#pragma once

#include "host/speech/speechentrypoints.h"
#include "host/speech/speechexport.h"
#include "host/speech/speechrequest_p.h"

#include <QByteArray>
#include <QMutex>

#include <array>
#include <functional>
#include <optional>

/// The program's one espeak-ng, which has its state in global variables: calls from several threads wait for each other.
class KORVANE_SPEECH_EXPORT Espeak
{
public:
    /// The first call starts it, on the GUI thread, since that touches the program's locale.
    static Espeak& instance();
    Q_DISABLE_COPY(Espeak)

    /// Success, NoData or NoVoice.
    SpeechEntryPoints::Result status(SpeechLanguage language);

    /// The sound of a text, 16-bit mono of sampleRate() in the machine's byte order; that of a language without a voice
    /// and of an empty text is empty.
    /// \param goesOn asked now and then, on the calling thread: false ends the synthesis with what there is so far
    QByteArray synthesise(const SpeechRequest& request, const std::function<bool()>& goesOn);

    static constexpr int sampleRate = 22050;

private:
    Espeak();

    QByteArray speak(const SpeechRequest& request, const std::function<bool()>& goesOn);
    bool hasVoice(SpeechLanguage language);

    QMutex m_mutex;
    bool m_hasStarted = false;
    std::array<std::optional<bool>, 2> m_hasVoice; ///< by SpeechLanguage, empty until asked
};
