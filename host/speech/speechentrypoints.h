#pragma once

#include <cstdint>

/// The entry points of the house's own speech libraries, vt_ENG and vt_kor: nine C functions each, whose names end in
/// _ENG and _KOR. They fit any caller that knows a vendor's engine by these names and leaves its settings at -1.
///
/// All of them are called on the thread of the Qt application. Texts and file names are in the local 8-bit encoding
/// (QString::fromLocal8Bit) and end with a zero byte. The program has one voice: a message takes the place of the one
/// being spoken, also of one in the other language, and a text of blanks only ends it. Stop, pause, restart and unload
/// touch what is spoken in their own language. Pointers called unused are not looked at; they and the window and message
/// of play and load are there for callers of engines that have a use for them.
namespace SpeechEntryPoints {

/// What the entry points return. Negative values are errors of the caller.
enum Result : std::int16_t {
    Success = 0,
    NoData = 1,        ///< espeak-ng does not start: its data is not where it looks for them
    NoVoice = 2,       ///< espeak-ng can't speak the language
    NoAudioOutput = 3, ///< nothing to play on, or no Qt application that could
    NotLoaded = 4,     ///< play before load, or after unload
    NotWritten = 5,    ///< the file can't be written
    BadArgument = -1   ///< null, an unknown request or format, a setting out of its range
};

/// VT_GetTTSInfo. Request 1 gives the number of speakers and fails with what keeps the language from being spoken;
/// request 4 gives what load returns when it succeeds (Success).
/// \param value takes 32 bits
/// \param size of value, in bytes: 4
using Info = std::int32_t (*)(std::int32_t request, void* unused, void* value, std::int32_t size);

/// VT_LOADTTS: makes the language ready to play. Each load wants its unload.
/// \param speaker -1 or 0, the only one
using Load = std::int16_t (*)(void* window, std::int32_t speaker, char* unusedPath, char* unusedFile);

/// VT_UNLOADTTS: the last one for a language ends what is spoken in it. Without a load it does nothing.
using Unload = void (*)(std::int32_t speaker);

/// VT_PLAYTTS: returns at once; synthesis and sound follow while the application's events are handled. -1 in a setting
/// takes its default.
/// \param pitch in percent of the voice's own, 0 to 200
/// \param speed in percent of 175 words a minute, 50 to 250
/// \param volume in percent, 0 to 100
/// \param pause additional silence between sentences in ms, 0 to 60000
/// \param dictionary 0, there are none
/// \param textType 0, plain text
/// \param speaker 0, the only one
using Play = std::int16_t (*)(void* window, std::uint32_t message, const char* text, std::int32_t pitch,
                              std::int32_t speed, std::int32_t volume, std::int32_t pause, std::int32_t dictionary,
                              std::int32_t textType, std::int32_t speaker);

/// The pieces of TextToBuffer.
enum Piece : std::int32_t {
    FirstPiece = 0, ///< synthesises the text and gives its first piece; a text begun before is dropped
    NextPiece = 1,  ///< gives the next one; text and settings are not looked at
    NoMorePiece = 2 ///< drops what is left; buffer and size are not looked at
};

/// VT_TextToBuffer: a text as 16-bit mono sound of 22050 Hz in the machine's byte order, without a header, in pieces. One
/// text a language at a time. Needs no load and no audio output, and returns when the text is synthesised.
/// \param format -1 or 0, the only one
/// \param size in bytes, not odd: the room in \p buffer at the call, what was filled at the return
/// \param piece a Piece; of the last piece \p size is less than the room, possibly 0
using TextToBuffer = std::int16_t (*)(std::int32_t format, const char* text, char* buffer, std::int32_t* size,
                                      std::int32_t piece, std::int32_t pitch, std::int32_t speed, std::int32_t volume,
                                      std::int32_t pause, std::int32_t dictionary, std::int32_t textType,
                                      std::int32_t speaker);

/// VT_TextToFile: a text as a WAV file of 16-bit mono sound of 22050 Hz, over one that is there. Needs no load and no audio
/// output, and returns when the file is written.
/// \param format -1 or 0, the only one
using TextToFile = std::int16_t (*)(std::int32_t format, const char* text, const char* fileName, std::int32_t pitch,
                                    std::int32_t speed, std::int32_t volume, std::int32_t pause,
                                    std::int32_t dictionary, std::int32_t textType, std::int32_t speaker);

/// VT_STOPTTS, VT_PAUSETTS, VT_RESTARTTTS: end what is spoken, hold it, go on where it was held. A message that is
/// played while another is held is spoken.
using Control = void (*)();

} // namespace SpeechEntryPoints
