#pragma once

#include "host/speech/speechexport.h"

class QByteArray;
class QString;

/// Writes 16-bit mono sound in the machine's byte order as a WAV file, over one that is there.
/// \returns false, and leaves what was there, when it can't be written
KORVANE_SPEECH_EXPORT bool writeSpeechFile(const QString& fileName, const QByteArray& sound);
