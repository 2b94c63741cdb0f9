#pragma once

#include <QMetaType>
#include <QString>

enum class SpeechLanguage { English, Korean };

/// A text and how it is spoken.
struct SpeechRequest
{
    SpeechLanguage language = SpeechLanguage::English;
    QString text;
    int pitch = 100;  ///< percent of the voice's own
    int speed = 100;  ///< percent of the usual words a minute
    int volume = 100; ///< percent
    int pauseMs = 0;  ///< silence added between sentences
};
