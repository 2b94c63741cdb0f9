// A speech library that writes down how it is called. Built once for each language and once without each of its entry
// points: SPEECH_SUFFIX names the language, WITHOUT_... what is left out. What it answers stands in the environment:
// SPEECH_INFO_1 and SPEECH_INFO_4 (results of the requests), SPEECH_VALUE_1 and SPEECH_VALUE_4 (what they give) and
// SPEECH_LOADED (all 32 bits in which the loading result lies), each 0 unless set; SPEECH_CALLS is the file of the calls.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#define JOIN_NAMES(a, b) a##b
#define JOIN(a, b) JOIN_NAMES(a, b)
#define TEXT_OF(a) #a
#define TEXT(a) TEXT_OF(a)
#define ENTRY_POINT(type, role) extern "C" __attribute__((visibility("default"))) type JOIN(VT_##role##_, SPEECH_SUFFIX)

namespace {

void record(const char* format, ...)
{
    std::FILE* file = std::fopen(std::getenv("SPEECH_CALLS"), "a");
    if (!file)
        std::abort();
    va_list arguments;
    va_start(arguments, format);
    std::fputs(TEXT(SPEECH_SUFFIX) " ", file);
    std::vfprintf(file, format, arguments);
    std::fputc('\n', file);
    va_end(arguments);
    std::fclose(file);
}

int answer(const char* name, int request)
{
    char variable[32];
    std::snprintf(variable, sizeof variable, "SPEECH_%s_%d", name, request);
    const char* value = std::getenv(variable);
    return value ? std::atoi(value) : 0;
}

// Text as the bytes that it is.
const char* hex(const char* text)
{
    static char digits[256];
    char* at = digits;
    for (; *text && at < digits + sizeof digits - 3; ++text)
        at += std::sprintf(at, "%02x", static_cast<unsigned char>(*text));
    *at = 0;
    return digits;
}

const struct Opened
{
    Opened() { record("opened"); }
} opened;

} // namespace

#ifndef WITHOUT_GetTTSInfo
ENTRY_POINT(int, GetTTSInfo)(int request, const void* second, int* value, int size)
{
    record("info %d %p *%d %d", request, second, *value, size);
    *value = answer("VALUE", request);
    return answer("INFO", request);
}
#endif
#ifndef WITHOUT_LOADTTS
ENTRY_POINT(int, LOADTTS)(const void* first, int second, const void* third, const void* fourth)
{
    record("load %p %d %p %p", first, second, third, fourth);
    const char* value = std::getenv("SPEECH_LOADED");
    return value ? std::atoi(value) : 0;
}
#endif
#ifndef WITHOUT_TextToBuffer
ENTRY_POINT(void, TextToBuffer)()
{
    record("text to buffer");
}
#endif
#ifndef WITHOUT_TextToFile
ENTRY_POINT(void, TextToFile)()
{
    record("text to file");
}
#endif
#ifndef WITHOUT_UNLOADTTS
ENTRY_POINT(void, UNLOADTTS)(int speaker)
{
    record("unload %d", speaker);
}
#endif
#ifndef WITHOUT_PLAYTTS
ENTRY_POINT(int, PLAYTTS)
(const void* first, int second, const char* text, int a, int b, int c, int d, int e, int f, int g)
{
    record("play %p %d <%s> %d %d %d %d %d %d %d", first, second, hex(text), a, b, c, d, e, f, g);
    return -1;
}
#endif
#ifndef WITHOUT_STOPTTS
ENTRY_POINT(void, STOPTTS)()
{
    record("stop");
}
#endif
#ifndef WITHOUT_RESTARTTTS
ENTRY_POINT(void, RESTARTTTS)()
{
    record("restart");
}
#endif
#ifndef WITHOUT_PAUSETTS
ENTRY_POINT(void, PAUSETTS)()
{
    record("pause");
}
#endif
