#pragma once

#include "tests/support/temporaryfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QVector>

#include <algorithm>
#include <cmath>
#include <cstring>

/// A sound card that writes down what it is given, 16-bit mono: one recording each time that an output is opened. Made
/// before the application, since it decides which of Qt's audio plugins there are (ALSA's alone).
class HeardSpeech
{
public:
    using Recording = QVector<qint16>;

    HeardSpeech()
    {
        const QDir plugins(QLibraryInfo::location(QLibraryInfo::PluginsPath));
        const QDir own(m_files.path(QStringLiteral("plugins")));
        own.mkpath(QStringLiteral("audio"));
        const QString alsa = QStringLiteral("audio/libqtaudio_alsa.so");
        if (!QFile::link(plugins.filePath(alsa), own.filePath(alsa)))
            qFatal("no audio plugins of its own in %s", qPrintable(own.path()));
        QCoreApplication::setLibraryPaths({own.path()});

        const QString card = QStringLiteral(
            "pcm.!default { type plug slave.pcm heard hint { show on description \"default\" } }\n"
            "pcm.heard { type file slave.pcm null file \"%1\" format raw truncate false hint { show on description "
            "\"heard\" } }\n"
            "pcm.null { type null }\n");
        qputenv("ALSA_CONFIG_PATH",
                m_files.write(QStringLiteral("alsa.conf"), card.arg(m_files.path(QStringLiteral("heard"))).toUtf8())
                    .toUtf8());
    }

    /// What was heard since the last call of forget(), oldest first; an output that was given nothing left nothing.
    QVector<Recording> recordings() const
    {
        QVector<Recording> found;
        for (const QFileInfo& info : files()) {
            if (info.size() == 0)
                continue;
            QFile file(info.filePath());
            if (!file.open(QIODevice::ReadOnly))
                qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
            const QByteArray bytes = file.readAll();
            Recording samples(bytes.size() / 2);
            std::memcpy(samples.data(), bytes.constData(), static_cast<std::size_t>(samples.size()) * 2);
            found.append(samples);
        }
        return found;
    }

    /// Samples of the newest recording; 0 without one.
    int newestLength() const
    {
        const QVector<Recording> all = recordings();
        return all.isEmpty() ? 0 : all.last().size();
    }

    void forget() const
    {
        for (const QFileInfo& info : files())
            QFile::remove(info.filePath());
    }

private:
    QFileInfoList files() const // the card numbers them behind the first one
    {
        const QDir folder(QFileInfo(m_files.path(QStringLiteral("heard"))).path());
        return folder.entryInfoList({QStringLiteral("heard*")}, QDir::Files, QDir::Name);
    }

    TemporaryFiles m_files;
};

inline int peakOf(const QVector<qint16>& samples)
{
    int peak = 0;
    for (const qint16 sample : samples)
        peak = std::max(peak, std::abs(int(sample)));
    return peak;
}

/// Root mean square.
inline double loudnessOf(const QVector<qint16>& samples)
{
    double squares = 0;
    for (const qint16 sample : samples)
        squares += double(sample) * sample;
    return samples.isEmpty() ? 0 : std::sqrt(squares / samples.size());
}
