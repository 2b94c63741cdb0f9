#pragma once

#include "host/speech/speechentrypoints.h"

#include <QByteArray>
#include <QLibrary>

/// The entry points of a speech library, found by its name as the speech front end finds it.
struct SpeechEngine
{
    SpeechEngine(const char* library, const char* suffix)
    {
        QLibrary file(QString::fromLatin1(library));
        const auto find = [&file, suffix](auto& entryPoint, const char* role) {
            const QByteArray name = QByteArray("VT_") + role + '_' + suffix;
            entryPoint = reinterpret_cast<std::decay_t<decltype(entryPoint)>>(file.resolve(name.constData()));
            if (!entryPoint)
                qFatal("%s: %s", name.constData(), qPrintable(file.errorString()));
        };
        find(info, "GetTTSInfo");
        find(load, "LOADTTS");
        find(textToBuffer, "TextToBuffer");
        find(textToFile, "TextToFile");
        find(unload, "UNLOADTTS");
        find(play, "PLAYTTS");
        find(stop, "STOPTTS");
        find(restart, "RESTARTTTS");
        find(pause, "PAUSETTS");
    }

    /// Plays with every setting at its default.
    std::int16_t say(const QByteArray& text) const
    {
        return play(nullptr, 0, text.constData(), -1, -1, -1, -1, -1, -1, -1);
    }

    SpeechEntryPoints::Info info = nullptr;
    SpeechEntryPoints::Load load = nullptr;
    SpeechEntryPoints::TextToBuffer textToBuffer = nullptr;
    SpeechEntryPoints::TextToFile textToFile = nullptr;
    SpeechEntryPoints::Unload unload = nullptr;
    SpeechEntryPoints::Play play = nullptr;
    SpeechEntryPoints::Control stop = nullptr;
    SpeechEntryPoints::Control restart = nullptr;
    SpeechEntryPoints::Control pause = nullptr;
};
