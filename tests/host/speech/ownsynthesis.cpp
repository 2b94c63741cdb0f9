// What espeak-ng says by itself: ownsynthesis VOICE TEXT prints the number of samples.
#include <espeak-ng/speak_lib.h>

#include <cstdio>
#include <cstring>

namespace {

long total = 0;

int count(short* samples, int number, espeak_EVENT*)
{
    if (samples)
        total += number;
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3 || espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr, 0) != 22050)
        return 1;
    espeak_SetSynthCallback(count);
    if (espeak_SetVoiceByName(argv[1]) != EE_OK)
        return 1;
    espeak_Synth(argv[2], std::strlen(argv[2]) + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8, nullptr, nullptr);
    std::printf("%ld\n", total);
    return 0;
}
