#include "scada/audio/voicewarekoreanengine_p.h"

VoiceWareKoreanEngine::VoiceWareKoreanEngine(QObject* parent) : VoiceWareEngine(parent)
{
}

VoiceWareKoreanEngine::~VoiceWareKoreanEngine() = default;
