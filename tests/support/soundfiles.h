#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QtEndian>
#include <QtGlobal>

/// What sox writes to its standard output. \p arguments stand as on a command line, separated by one blank.
inline QByteArray sox(const QString& arguments)
{
    QProcess process;
    process.start(QStringLiteral("sox"), arguments.split(QLatin1Char(' ')));
    process.closeWriteChannel();
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        qFatal("sox %s: %s", qPrintable(arguments), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

/// A WAV file that sox made, and its samples as sox reads them back.
struct SoundFile
{
    QString path;
    int rate;           ///< samples a second
    QByteArray samples; ///< little-endian
};

/// Has sox make \p path: noise of \p count samples a channel.
inline SoundFile makeSoundFile(const QString& path, int rate, int channels, int bits, int count)
{
    sox(QStringLiteral("-R -D -r %1 -c %2 -n -b %3 %4 synth %5s noise")
            .arg(rate)
            .arg(channels)
            .arg(bits)
            .arg(path)
            .arg(count));
    return {path, rate, sox(QStringLiteral("-D %1 -t raw -L -").arg(path))};
}

// Pieces of a WAV file, written by hand.

/// A number in as many little-endian bytes as its type has.
template <typename Number>
QByteArray littleEndian(Number number)
{
    QByteArray bytes(int(sizeof number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

/// The first 16 bytes of a chunk "fmt ": byte rate and block align are never right, since nobody looks at them.
inline QByteArray waveFormat(quint16 channels, quint32 rate, quint16 bits, quint16 tag = 1)
{
    return littleEndian(tag) + littleEndian(channels) + littleEndian(rate) + QByteArray::fromHex("ddccbbaaffee") +
           littleEndian(bits);
}

/// A chunk that tells \p size, whatever its body has.
inline QByteArray waveChunk(const char* id, quint32 size, const QByteArray& body)
{
    return QByteArray(id, 4) + littleEndian(size) + body;
}

inline QByteArray waveChunk(const char* id, const QByteArray& body)
{
    return waveChunk(id, quint32(body.size()), body);
}

/// The 12 bytes before the chunks.
inline QByteArray waveHeader(const char* riff = "RIFF", const char* form = "WAVE")
{
    return QByteArray(riff, 4) + QByteArray::fromHex("ffffffff") + QByteArray(form, 4);
}
