#pragma once

#include "scada/audio/voicewareengine_p.h"

struct VoiceWareEnglishVoice
{
    static constexpr QLocale::Language language = QLocale::English;
    static constexpr const char* library = "vt_ENG";
    static constexpr const char* suffix = "_ENG";
};

/// Speaks English. Not part of the library's interface.
class VoiceWareEnglishEngine : public VoiceWareEngine<VoiceWareEnglishVoice>
{
    Q_OBJECT
    Q_DISABLE_COPY(VoiceWareEnglishEngine)

public:
    explicit VoiceWareEnglishEngine(QObject* parent);
    ~VoiceWareEnglishEngine() override;
};
