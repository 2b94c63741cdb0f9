// Reads any bytes as a WAV file, and compares with a reading of the same bytes in memory.

#include "fuzz/storedinput.h"
#include "scada/audio/wavfile_p.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace {

/// What a file of these bytes holds, by position.
struct Expected
{
    std::optional<qint64> parsedLength; ///< none when reading fails among the chunks
    std::optional<QByteArray> samples;  ///< none when reading fails
    qint64 formatAt = 0;                ///< of the first 16 bytes of the chunk "fmt "
};

/// Goes from chunk to chunk until one has the id. \returns where its body begins; none at the end of the bytes.
std::optional<qint64> bodyOf(const char* id, const QByteArray& bytes, qint64 at)
{
    while (at + 8 <= bytes.size()) {
        if (bytes.mid(int(at), 4) == id)
            return at + 8;
        at += 8 + qint64(qFromLittleEndian<quint32>(bytes.constData() + at + 4));
    }
    return {};
}

quint32 sizeBefore(const QByteArray& bytes, qint64 body)
{
    return qFromLittleEndian<quint32>(bytes.constData() + body - 4);
}

Expected expectedOf(const QByteArray& bytes)
{
    Expected expected;
    const bool isWave =
        bytes.size() >= 12 && (bytes.startsWith("RIFF") || bytes.startsWith("RIFX")) && bytes.mid(8, 4) == "WAVE";
    if (!isWave) {
        expected.parsedLength = std::min(bytes.size(), 12);
        return expected;
    }
    const auto format = bodyOf("fmt ", bytes, 12);
    if (!format || *format + 16 > bytes.size())
        return expected;
    expected.formatAt = *format;
    const auto data = bodyOf("data", bytes, *format + std::max<qint64>(16, sizeBefore(bytes, *format)));
    if (!data)
        return expected;
    const qint64 length = std::min<qint64>(sizeBefore(bytes, *data), bytes.size() - *data);
    expected.samples = bytes.mid(int(*data), int(length));
    expected.parsedLength = *data + length;
    return expected;
}

void checkFormat(const QAudioFormat& format, const QByteArray& bytes, qint64 at)
{
    const auto bits = qFromLittleEndian<quint16>(bytes.constData() + at + 14);
    require(format.channelCount() == qFromLittleEndian<quint16>(bytes.constData() + at + 2), "channels");
    require(format.sampleRate() == qFromLittleEndian<qint32>(bytes.constData() + at + 4), "rate");
    require(format.sampleSize() == bits, "bits");
    require((format.sampleType() == QAudioFormat::UnSignedInt) == (bits == 8), "8 bits are unsigned");
    require((format.byteOrder() == QAudioFormat::BigEndian) == bytes.startsWith("RIFX"), "RIFX is big-endian");
    require(format.codec() == QLatin1String("audio/pcm"), "codec");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/fuzz_wavfile"));
    static QFile written(folder.filePath(QStringLiteral("f.wav")));
    if (!written.isOpen())
        require(written.open(QIODevice::ReadWrite | QIODevice::Unbuffered), "there is a file");
    const auto bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    require(written.resize(0) && written.seek(0) && written.write(bytes) == bytes.size(), "the bytes are written");

    const Expected expected = expectedOf(bytes);
    WavFile file;
    const bool isRead = file.load(written.fileName());
    require(isRead == expected.samples.has_value(), "a sound is read if there is one");
    require(file.parsedLength() == expected.parsedLength.value_or(0), "it ends where reading ends");
    require(file.samples().data() == expected.samples.value_or(QByteArray()), "the samples are read");
    require(file.samples().isOpen() == isRead && file.samples().pos() == 0, "they are ready to be played");
    if (isRead)
        checkFormat(file.format(), bytes, expected.formatAt);
    else
        require(file.format() == QAudioFormat(), "the format stays");
    return 0;
}
