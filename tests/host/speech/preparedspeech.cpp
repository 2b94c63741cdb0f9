// What the program can speak with, a line a language: preparedspeech [--twice] [FOLDER...]. The sound card is that of the
// environment, through ALSA alone.
#include "host/speech/speechlibraries.h"

#include <QCoreApplication>
#include <QLibrary>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication::setLibraryPaths({QString::fromLocal8Bit(qgetenv("OWN_PLUGINS"))});
    const QCoreApplication application(argc, argv);
    QStringList folders = QCoreApplication::arguments().mid(1);
    if (folders.removeAll(QStringLiteral("--twice")) > 0)
        SpeechLibraries::prepare(folders);
    for (const SpeechLibraries::Found& found : SpeechLibraries::prepare(folders)) {
        const char* origins[] = {"none", "vendor", "own"};
        const bool isEnglish = found.language == QLocale::English;
        // As the speech front end looks for it.
        QLibrary byName(isEnglish ? QStringLiteral("vt_ENG") : QStringLiteral("vt_kor"));
        const bool isFound = byName.resolve(isEnglish ? "VT_PLAYTTS_ENG" : "VT_PLAYTTS_KOR");
        std::printf("%s|%s|%s|%s|%s\n", qPrintable(QLocale::languageToString(found.language)),
                    origins[static_cast<int>(found.origin)], qPrintable(found.fileName),
                    isFound ? "found by name" : "not found by name", qPrintable(found.problem));
    }
    return 0;
}
