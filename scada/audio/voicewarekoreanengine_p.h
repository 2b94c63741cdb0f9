#pragma once

#include "scada/audio/voicewareengine_p.h"

struct VoiceWareKoreanVoice
{
    static constexpr QLocale::Language language = QLocale::Korean;
    static constexpr const char* library = "vt_kor";
    static constexpr const char* suffix = "_KOR";
};

/// Speaks Korean. Not part of the library's interface.
class VoiceWareKoreanEngine : public VoiceWareEngine<VoiceWareKoreanVoice>
{
    Q_OBJECT
    Q_DISABLE_COPY(VoiceWareKoreanEngine)

public:
    explicit VoiceWareKoreanEngine(QObject* parent);
    ~VoiceWareKoreanEngine() override;
};
