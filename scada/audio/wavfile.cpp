#include "scada/audio/wavfile_p.h"

#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace {

constexpr qint64 riffHeaderBytes = 12;
constexpr qint64 chunkHeaderBytes = 8;
constexpr qint64 formatBytes = 16; // what follows them in the chunk extends the format and is skipped

bool isTag(const char* bytes, const char* tag)
{
    return std::memcmp(bytes, tag, 4) == 0;
}

} // namespace

struct WavFile::Chunk
{
    char id[4];
    quint32 size;
};

struct WavFile::Format
{
    quint16 channels;
    quint32 rate; ///< samples a second
    quint16 bits; ///< of a sample
};

WavFile::WavFile() = default;

WavFile::~WavFile() = default;

bool WavFile::load(const QString& path)
{
    if (isOpen())
        close();
    close(); // kept: harmless on a closed file
    setFileName(path);
    return QFileInfo(path).isFile() && open(QIODevice::ReadOnly) && readHeader();
}

bool WavFile::readHeader()
{
    seek(0);
    char riff[riffHeaderBytes];
    const bool isWave =
        readExactly(riff, riffHeaderBytes) && (isTag(riff, "RIFF") || isTag(riff, "RIFX")) && isTag(riff + 8, "WAVE");
    if (!isWave) {
        m_parsedLength = pos();
        return false;
    }
    Format format{};
    Chunk data{};
    if (!readFormat(format) || !findChunk("data", data))
        return false;

    // Only the samples of a RIFX file are big-endian, kept: its sizes and its format are read as those of a RIFF file.
    m_format.setByteOrder(isTag(riff, "RIFF") ? QAudioFormat::LittleEndian : QAudioFormat::BigEndian);
    m_format.setChannelCount(format.channels);
    m_format.setCodec(QStringLiteral("audio/pcm"));
    m_format.setSampleRate(static_cast<int>(format.rate));
    m_format.setSampleSize(format.bits);
    m_format.setSampleType(format.bits == 8 ? QAudioFormat::UnSignedInt : QAudioFormat::SignedInt);
    takeSamples(data.size);
    m_parsedLength = pos();
    return true;
}

bool WavFile::readExactly(char* bytes, qint64 count)
{
    return read(bytes, count) == count;
}

bool WavFile::readChunkHeader(Chunk& chunk)
{
    char header[chunkHeaderBytes];
    if (!readExactly(header, chunkHeaderBytes))
        return false;
    std::copy_n(header, sizeof chunk.id, chunk.id);
    chunk.size = qFromLittleEndian<quint32>(header + sizeof chunk.id);
    return true;
}

// Kept: no byte pads a chunk of odd size.
bool WavFile::findChunk(const char* id, Chunk& chunk)
{
    while (readChunkHeader(chunk)) {
        if (isTag(chunk.id, id))
            return true;
        skip(chunk.size); // to the end of the file at most: then there is no next header
    }
    return false;
}

bool WavFile::readFormat(Format& format)
{
    Chunk chunk{};
    char body[formatBytes];
    if (!findChunk("fmt ", chunk) || !readExactly(body, formatBytes))
        return false;
    format.channels = qFromLittleEndian<quint16>(body + 2);
    format.rate = qFromLittleEndian<quint32>(body + 4);
    format.bits = qFromLittleEndian<quint16>(body + 14);
    if (chunk.size > formatBytes)
        skip(chunk.size - formatBytes);
    return true;
}

void WavFile::takeSamples(qint64 size)
{
    m_samples.close();
    // Reading allocates what it is asked for: no more than the file can still give.
    m_samples.setData(read(std::min(size, bytesAvailable())));
    m_samples.open(QIODevice::ReadWrite);
    m_samples.seek(0);
}
