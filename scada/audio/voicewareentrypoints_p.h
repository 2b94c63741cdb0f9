#pragma once

#include <QtGlobal>

class QByteArray;
class QString;

/// The entry points of one speech library, null where it has none of that name. Not part of the library's interface.
struct VoiceWareEntryPoints
{
    using Info = qint32 (*)(qint32 request, void* unused, void* value, qint32 size);
    using Load = qint16 (*)(void* window, qint32 speaker, char* database, char* licence);
    using Unload = void (*)(qint32 speaker);
    using Play = qint16 (*)(void* window, quint32 message, const char* text, qint32 pitch, qint32 speed, qint32 volume,
                            qint32 pause, qint32 dictionary, qint32 textType, qint32 speaker);

    Info info = nullptr;
    Load load = nullptr;
    QFunctionPointer textToBuffer = nullptr;
    QFunctionPointer textToFile = nullptr;
    Unload unload = nullptr;
    Play play = nullptr;
    QFunctionPointer stop = nullptr;
    QFunctionPointer restart = nullptr;
    QFunctionPointer pause = nullptr;

    /// Looks all of them up, which loads the library; it stays loaded to the end of the program.
    /// \param suffix of the names, with its underscore
    void resolve(const QString& library, const char* suffix);
    /// Brings the engine up.
    /// \returns false when the library is missing, incomplete or does not answer with its own code for success
    bool start() const;
    /// Speaks with all settings at their defaults; does nothing where the library can't play.
    void speak(const QByteArray& text) const;
    /// Shuts the engine down, whether it is up or not.
    void shutDown() const;
};
