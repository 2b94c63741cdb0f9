#pragma once

#include <QAudioFormat>
#include <QBuffer>
#include <QFile>

/// A WAV file whose samples lie in memory once its header was read.
///
/// It looks at little: the tags of the file, the first 16 bytes of the chunk "fmt ", and the chunk "data". Neither the
/// audio format tag nor byte rate nor block align is checked; whether the format can be played is the output's matter.
/// Not part of the library's interface.
class WavFile : public QFile
{
public:
    WavFile();
    ~WavFile() override;

    /// Closes the file that is open, and opens and reads another one. Only regular files are opened: a pipe would keep
    /// whoever asks waiting for its writer.
    /// \returns whether there is a sound; if not, format and data are those of the file before, the name is \p path.
    bool load(const QString& path);

    /// Parses the open file from its beginning.
    /// \returns false when it is no WAV file or ends before its samples; format and data are then as before.
    bool readHeader();

    /// The format of the file that was read last: linear PCM of 8 bits unsigned, of any other width signed.
    const QAudioFormat& format() const { return m_format; }
    /// Where reading the header ended, in bytes: behind the samples, or behind the tags of a file that is no WAV file. A
    /// file that ends among its chunks leaves it unchanged.
    qint64 parsedLength() const { return m_parsedLength; }
    /// The samples of the file that was read last, open and at their beginning once there are any.
    QBuffer& samples() { return m_samples; }

private:
    struct Chunk;
    struct Format;

    bool readExactly(char* bytes, qint64 count);
    bool readChunkHeader(Chunk& chunk);
    bool findChunk(const char* id, Chunk& chunk);
    bool readFormat(Format& format);
    void takeSamples(qint64 size);

    // In this order; the samples go first.
    QAudioFormat m_format;
    qint64 m_parsedLength = 0;
    QBuffer m_samples;
};
