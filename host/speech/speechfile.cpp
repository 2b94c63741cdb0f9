#include "host/speech/speechfile_p.h"

#include "host/speech/espeak_p.h"

#include <QDataStream>
#include <QSaveFile>
#include <QtEndian>

namespace {

constexpr int headerBytes = 36; // of the file, behind its length, and before its samples
constexpr quint16 pcm = 1;
constexpr quint16 channels = 1;
constexpr quint16 bytesASample = 2;

} // namespace

bool writeSpeechFile(const QString& fileName, const QByteArray& sound)
{
    QByteArray samples(sound.size(), Qt::Uninitialized);
    qToLittleEndian<quint16>(sound.constData(), sound.size() / bytesASample, samples.data());

    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("RIFF", 4);
    stream << quint32(headerBytes + samples.size());
    stream.writeRawData("WAVEfmt ", 8);
    stream << quint32(16) << pcm << channels << quint32(Espeak::sampleRate)
           << quint32(Espeak::sampleRate * bytesASample) << bytesASample << quint16(8 * bytesASample);
    stream.writeRawData("data", 4);
    stream << quint32(samples.size());
    stream.writeRawData(samples.constData(), samples.size());
    return file.commit();
}
