#include "scada/audio/voicewareenglishengine_p.h"

VoiceWareEnglishEngine::VoiceWareEnglishEngine(QObject* parent) : VoiceWareEngine(parent)
{
}

VoiceWareEnglishEngine::~VoiceWareEnglishEngine() = default;
