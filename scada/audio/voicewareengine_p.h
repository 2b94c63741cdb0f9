#pragma once

#include "scada/audio/ttsengininterface_p.h"
#include "scada/audio/voicewareentrypoints_p.h"

/// Speaks through a VoiceWare library, loaded with the first message. Not part of the library's interface.
///
/// \tparam Voice what tells the engines apart: language, library (a name as QLibrary takes it) and suffix of its entry
/// points. The entry points belong to the program, one set for each voice.
template <typename Voice>
class VoiceWareEngine : public TTSEnginInterface
{
    Q_DISABLE_COPY(VoiceWareEngine)

public:
    using TTSEnginInterface::TTSEnginInterface;
    ~VoiceWareEngine() override
    {
        // Kept: an engine that failed to load is shut down too.
        if (m_isLoadAttempted)
            s_entryPoints.shutDown();
    }

    void playMessage(const QString& text) override
    {
        if (!m_isLoadAttempted) {
            m_isLoadAttempted = true; // never again: a missing library is not looked for at each message
            s_entryPoints.resolve(QLatin1String(Voice::library), Voice::suffix);
            m_hasLoadFailed = !s_entryPoints.start();
        }
        if (m_hasLoadFailed)
            return;
        s_entryPoints.speak(text.toLocal8Bit());
    }

    QLocale::Language language() const override { return Voice::language; }

private:
    bool m_isLoadAttempted = false;
    bool m_hasLoadFailed = false;

    static inline VoiceWareEntryPoints s_entryPoints;
};
