// The entry points of one language: KORVANE_SPEECH_SUFFIX ends their names, KORVANE_SPEECH_LANGUAGE is what they speak.
#include "host/speech/speechentrypoints.h"

#include "host/speech/espeak_p.h"
#include "host/speech/speaker_p.h"
#include "host/speech/speechfile_p.h"

#include <QFile>

#include <cstring>
#include <type_traits>

#define JOIN_NAMES(a, b) a##b
#define JOIN(a, b) JOIN_NAMES(a, b)
#define ENTRY_POINT(type, role) extern "C" Q_DECL_EXPORT type JOIN(VT_##role##_, KORVANE_SPEECH_SUFFIX)

using namespace SpeechEntryPoints;

namespace {

constexpr SpeechLanguage language = SpeechLanguage::KORVANE_SPEECH_LANGUAGE;

/// The sound whose pieces are being fetched.
struct Fetched
{
    QByteArray sound;
    int done = 0;
};

Fetched& fetched()
{
    static Fetched fetched;
    return fetched;
}

bool isDefault(qint32 value)
{
    return value == -1 || value == 0;
}

/// Puts a setting that is not left at -1 into \p place. \returns false when it is out of its range.
bool set(int& place, qint32 value, qint32 lowest, qint32 highest)
{
    if (value == -1)
        return true;
    place = value;
    return lowest <= value && value <= highest;
}

/// What the settings of the entry points say. \returns false when one of them is out of its range.
bool read(SpeechRequest& request, const char* text, qint32 pitch, qint32 speed, qint32 volume, qint32 pause,
          qint32 dictionary, qint32 textType, qint32 speaker)
{
    if (!text || !isDefault(dictionary) || !isDefault(textType) || !isDefault(speaker))
        return false;
    request.language = language;
    request.text = QString::fromLocal8Bit(text);
    return set(request.pitch, pitch, 0, 200) && set(request.speed, speed, 50, 250) &&
           set(request.volume, volume, 0, 100) && set(request.pauseMs, pause, 0, 60000);
}

QByteArray synthesise(const SpeechRequest& request)
{
    return Espeak::instance().synthesise(request, [] { return true; });
}

Result fetchPiece(char* buffer, qint32* size)
{
    if (!buffer || !size || *size < 2 || *size % 2 != 0)
        return BadArgument;
    const qint32 count = qMin(*size, fetched().sound.size() - fetched().done);
    std::memcpy(buffer, fetched().sound.constData() + fetched().done, static_cast<std::size_t>(count));
    fetched().done += count;
    *size = count;
    return Success;
}

} // namespace

ENTRY_POINT(std::int32_t, GetTTSInfo)(std::int32_t request, void*, void* value, std::int32_t size)
{
    if (!value || size != sizeof(std::int32_t))
        return BadArgument;
    std::int32_t answer = Success;
    std::int32_t result = Success;
    if (request == 1) {
        answer = 1;
        result = Speaker::status(language);
    } else if (request != 4) {
        return BadArgument;
    }
    std::memcpy(value, &answer, sizeof answer);
    return result;
}

ENTRY_POINT(std::int16_t, LOADTTS)(void*, std::int32_t speaker, char*, char*)
{
    return isDefault(speaker) ? Speaker::load(language) : BadArgument;
}

ENTRY_POINT(void, UNLOADTTS)(std::int32_t)
{
    fetched() = {};
    Speaker::unload(language);
}

ENTRY_POINT(std::int16_t, PLAYTTS)
(void*, std::uint32_t, const char* text, std::int32_t pitch, std::int32_t speed, std::int32_t volume,
 std::int32_t pause, std::int32_t dictionary, std::int32_t textType, std::int32_t speaker)
{
    Speaker* voice = Speaker::of(language);
    if (!voice)
        return NotLoaded;
    SpeechRequest request;
    if (!read(request, text, pitch, speed, volume, pause, dictionary, textType, speaker))
        return BadArgument;
    voice->speak(request);
    return Success;
}

ENTRY_POINT(std::int16_t, TextToBuffer)
(std::int32_t format, const char* text, char* buffer, std::int32_t* size, std::int32_t piece, std::int32_t pitch,
 std::int32_t speed, std::int32_t volume, std::int32_t pause, std::int32_t dictionary, std::int32_t textType,
 std::int32_t speaker)
{
    if (!isDefault(format) || piece < FirstPiece || piece > NoMorePiece)
        return BadArgument;
    if (piece != NextPiece)
        fetched() = {};
    if (piece == NoMorePiece)
        return Success;
    if (piece == FirstPiece) {
        SpeechRequest request;
        if (!read(request, text, pitch, speed, volume, pause, dictionary, textType, speaker))
            return BadArgument;
        const Result status = Espeak::instance().status(language);
        if (status != Success)
            return status;
        fetched().sound = synthesise(request);
    }
    return fetchPiece(buffer, size);
}

ENTRY_POINT(std::int16_t, TextToFile)
(std::int32_t format, const char* text, const char* fileName, std::int32_t pitch, std::int32_t speed,
 std::int32_t volume, std::int32_t pause, std::int32_t dictionary, std::int32_t textType, std::int32_t speaker)
{
    SpeechRequest request;
    if (!isDefault(format) || !fileName ||
        !read(request, text, pitch, speed, volume, pause, dictionary, textType, speaker))
        return BadArgument;
    const Result status = Espeak::instance().status(language);
    if (status != Success)
        return status;
    return writeSpeechFile(QFile::decodeName(fileName), synthesise(request)) ? Success : NotWritten;
}

ENTRY_POINT(void, STOPTTS)()
{
    if (Speaker* voice = Speaker::of(language))
        voice->stop(language);
}

ENTRY_POINT(void, RESTARTTTS)()
{
    if (Speaker* voice = Speaker::of(language))
        voice->restart(language);
}

ENTRY_POINT(void, PAUSETTS)()
{
    if (Speaker* voice = Speaker::of(language))
        voice->pause(language);
}

// Callers know them by these types alone.
#define IS_AS_DECLARED(role, type)                                                                                     \
    static_assert(std::is_same_v<decltype(&JOIN(VT_##role##_, KORVANE_SPEECH_SUFFIX)), type>)
IS_AS_DECLARED(GetTTSInfo, Info);
IS_AS_DECLARED(LOADTTS, Load);
IS_AS_DECLARED(UNLOADTTS, Unload);
IS_AS_DECLARED(PLAYTTS, Play);
IS_AS_DECLARED(TextToBuffer, TextToBuffer);
IS_AS_DECLARED(TextToFile, TextToFile);
IS_AS_DECLARED(STOPTTS, Control);
IS_AS_DECLARED(RESTARTTTS, Control);
IS_AS_DECLARED(PAUSETTS, Control);
