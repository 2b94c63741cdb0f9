#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QList>
#include <QString>
#include <QTemporaryDir>
#include <QtGlobal>

#include <algorithm>

/// Hears what the program plays on its default output device, without a sound card: ALSA writes it to files, some four
/// times as fast as it would sound. A member of the test class, so that it stands before Qt first looks for devices.
///
/// The last tenth of a second of a sound comes when its output is stopped or deleted, not when it becomes idle.
class HeardSound
{
public:
    /// One sound, from the start of an output to its end.
    struct Sound
    {
        /// What the device was set to: samples a second, channels and ALSA's name of the format, as "22050 1 S16_LE".
        QString format;
        QByteArray samples; ///< as they came to the device, byte for byte
    };

    HeardSound()
    {
        if (!m_folder.isValid())
            qFatal("no folder for sounds: %s", qPrintable(m_folder.errorString()));
        QDir(m_folder.path()).mkdir(QStringLiteral("heard"));
        configureAlsa();
        leaveOutPulseAudio();
    }

    /// What was heard up to now, in order. Outputs that ended before their first sample were not heard.
    QList<Sound> sounds() const
    {
        QFileInfoList files = QDir(heardFolder()).entryInfoList(QDir::Files);
        // An output takes its first samples a timer's turn after its start: no two sounds are of one moment.
        std::sort(files.begin(), files.end(),
                  [](const QFileInfo& a, const QFileInfo& b) { return a.lastModified() < b.lastModified(); });
        QList<Sound> sounds;
        for (const QFileInfo& info : qAsConst(files)) {
            QFile file(info.filePath());
            if (!file.open(QIODevice::ReadOnly))
                qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
            const QByteArray samples = file.readAll();
            if (!samples.isEmpty())
                sounds.append({info.fileName().section(QLatin1Char('.'), 0, 0), samples});
        }
        return sounds;
    }

    /// The sound that was heard last; empty when there was silence.
    Sound last() const
    {
        const QList<Sound> all = sounds();
        return all.isEmpty() ? Sound{} : all.constLast();
    }

    /// The samples that were heard last.
    QByteArray samples() const { return last().samples; }

    /// Forgets what was heard. Not while something is played.
    void clear() const
    {
        const QDir folder(heardFolder());
        for (const QString& name : folder.entryList(QDir::Files))
            QFile::remove(folder.filePath(name));
    }

private:
    QString heardFolder() const { return m_folder.filePath(QStringLiteral("heard")); }

    void configureAlsa() const
    {
        // A file for each start of an output, its name the format; the second of one format and later ones get a number.
        const QString text =
            QStringLiteral("pcm.!default { type plug slave.pcm heard hint { show on description heard } }\n"
                           "pcm.heard { type file slave.pcm silent file '%1/%r %c %f.raw' format raw truncate false }\n"
                           "pcm.silent { type null }\n")
                .replace(QLatin1String("%1"), heardFolder());
        QFile file(m_folder.filePath(QStringLiteral("alsa.conf")));
        const QByteArray bytes = text.toLocal8Bit();
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
        qputenv("ALSA_CONFIG_PATH", file.fileName().toLocal8Bit());
    }

    /// Gives Qt its plugins without that of PulseAudio, which has the default device even where no server runs.
    void leaveOutPulseAudio() const
    {
        const QDir plugins(QLibraryInfo::location(QLibraryInfo::PluginsPath));
        const QDir tree(m_folder.filePath(QStringLiteral("plugins")));
        tree.mkpath(QStringLiteral("audio"));
        for (const QString& kind : plugins.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            if (kind != QLatin1String("audio"))
                QFile::link(plugins.filePath(kind), tree.filePath(kind));
        }
        const QDir audio(plugins.filePath(QStringLiteral("audio")));
        for (const QString& name : audio.entryList(QDir::Files)) {
            if (!name.contains(QLatin1String("pulse")))
                QFile::link(audio.filePath(name), tree.filePath(QStringLiteral("audio/") + name));
        }
        QCoreApplication::setLibraryPaths({tree.path()});
    }

    QTemporaryDir m_folder;
};
