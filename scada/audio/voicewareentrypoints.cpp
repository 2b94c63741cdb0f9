#include "scada/audio/voicewareentrypoints_p.h"

#include <QByteArray>
#include <QLibrary>
#include <QString>

namespace {

constexpr qint32 engineRequest = 1;
constexpr qint32 successRequest = 4; // gives what the engine returns from loading when that succeeds
constexpr qint32 byDefault = -1;

template <typename EntryPoint>
void find(QLibrary& library, EntryPoint& entryPoint, const QByteArray& name)
{
    entryPoint = reinterpret_cast<EntryPoint>(library.resolve(name.constData()));
}

} // namespace

void VoiceWareEntryPoints::resolve(const QString& library, const char* suffix)
{
    QLibrary file(library);
    find(file, info, QByteArray("VT_GetTTSInfo") + suffix);
    find(file, load, QByteArray("VT_LOADTTS") + suffix);
    find(file, textToBuffer, QByteArray("VT_TextToBuffer") + suffix);
    find(file, textToFile, QByteArray("VT_TextToFile") + suffix);
    find(file, unload, QByteArray("VT_UNLOADTTS") + suffix);
    find(file, play, QByteArray("VT_PLAYTTS") + suffix);
    find(file, stop, QByteArray("VT_STOPTTS") + suffix);
    find(file, restart, QByteArray("VT_RESTARTTTS") + suffix);
    find(file, pause, QByteArray("VT_PAUSETTS") + suffix);
}

bool VoiceWareEntryPoints::start() const
{
    if (!info)
        return false;
    qint32 value = 0;
    if (info(engineRequest, nullptr, &value, sizeof value) != 0)
        return false;
    if (info(successRequest, nullptr, &value, sizeof value) != 0)
        return false;
    // Engines export both or neither. A damaged one without it is a failed one: it must not take the program down.
    if (!load)
        return false;
    return load(nullptr, byDefault, nullptr, nullptr) == value;
}

void VoiceWareEntryPoints::speak(const QByteArray& text) const
{
    if (play) {
        play(nullptr, 0, text.constData(), byDefault, byDefault, byDefault, byDefault, byDefault, byDefault, byDefault);
    }
}

void VoiceWareEntryPoints::shutDown() const
{
    if (unload)
        unload(byDefault);
}
