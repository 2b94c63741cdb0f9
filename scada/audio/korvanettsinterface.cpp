#include "scada/audio/korvanettsinterface.h"

#include "scada/audio/voicewareenglishengine_p.h"
#include "scada/audio/voicewarekoreanengine_p.h"

KorvaneTTSInterface::KorvaneTTSInterface(QObject* parent) : QObject(parent)
{
}

KorvaneTTSInterface::~KorvaneTTSInterface() = default;

void KorvaneTTSInterface::loadEngine()
{
    m_engines.insert(QLocale::English, new VoiceWareEnglishEngine(this));
    m_engines.insert(QLocale::Korean, new VoiceWareKoreanEngine(this));
    m_isEngineLoaded = true;
}

void KorvaneTTSInterface::playMessage(const QString& text, QLocale::Language language)
{
    if (!m_isEngineLoaded)
        loadEngine();
    TTSEnginInterface* engine = m_engines.value(language);
    if (!engine)
        return;
    engine->playMessage(text);
}
