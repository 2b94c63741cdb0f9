#include "host/speech/speechlibraries.h"

#include "host/speech/speechentrypoints.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>

namespace {

struct Name
{
    QLocale::Language language;
    const char* library; ///< as the speech front end asks for it
    const char* info;
};

constexpr Name names[] = {{QLocale::English, "vt_ENG", "VT_GetTTSInfo_ENG"},
                          {QLocale::Korean, "vt_kor", "VT_GetTTSInfo_KOR"}};

QString pathIn(const QString& folder, const Name& name)
{
    return QDir::cleanPath(folder + QLatin1Char('/') + QLatin1String(name.library));
}

QString problemText(qint32 result)
{
    switch (result) {
    case SpeechEntryPoints::Success:
        return {};
    case SpeechEntryPoints::NoData:
        return QStringLiteral("espeak-ng does not start: install its data (espeak-ng-data)");
    case SpeechEntryPoints::NoVoice:
        return QStringLiteral("espeak-ng has no voice for the language: install its data (espeak-ng-data) anew");
    case SpeechEntryPoints::NoAudioOutput:
        return QStringLiteral("there is no audio output to play speech on");
    default:
        return QStringLiteral("the library answers with code %1").arg(result);
    }
}

QString problemOf(QLibrary& library, const Name& name)
{
    const auto info = reinterpret_cast<SpeechEntryPoints::Info>(library.resolve(name.info));
    if (!info)
        return QStringLiteral("the library lacks %1").arg(QLatin1String(name.info));
    qint32 value = 0;
    return problemText(info(1, nullptr, &value, sizeof value));
}

SpeechLibraries::Found ownIn(QLibrary& library, const Name& name)
{
    return {name.language, SpeechLibraries::Origin::Own, library.fileName(), problemOf(library, name)};
}

SpeechLibraries::Found find(const Name& name, const QStringList& folders)
{
    // One that was loaded before is also found by its name.
    for (const QString& folder : folders) {
        QLibrary own(pathIn(folder, name));
        if (own.isLoaded())
            return ownIn(own, name);
    }
    QLibrary vendor(QLatin1String(name.library));
    if (vendor.load())
        return {name.language, SpeechLibraries::Origin::Vendor, vendor.fileName(), {}};
    QStringList problems{vendor.errorString()};
    for (const QString& folder : folders) {
        QLibrary own(pathIn(folder, name));
        if (own.load())
            return ownIn(own, name);
        problems.append(own.errorString());
    }
    return {name.language, SpeechLibraries::Origin::None, {}, problems.join(QLatin1String("; "))};
}

} // namespace

QVector<SpeechLibraries::Found> SpeechLibraries::prepare(const QStringList& folders)
{
    QVector<Found> found;
    for (const Name& name : names)
        found.append(find(name, folders));
    return found;
}

QStringList SpeechLibraries::ownFolders()
{
    const QDir program(QCoreApplication::applicationDirPath());
    return {program.absoluteFilePath(QStringLiteral("speech")),
            QDir::cleanPath(program.absoluteFilePath(QStringLiteral(KORVANE_SPEECH_FOLDER)))};
}
