#pragma once

#include "host/hostexport.h"

#include <QLocale>
#include <QStringList>
#include <QVector>

/// What the program speaks with: an engine that is installed on the system or, where there is none, the house's own
/// libraries, which speak through espeak-ng.
class KORVANE_HOST_EXPORT SpeechLibraries
{
public:
    enum class Origin {
        None,   ///< the language stays silent
        Vendor, ///< found by its name where the system looks for libraries
        Own     ///< the house's own
    };

    struct Found
    {
        QLocale::Language language = QLocale::AnyLanguage;
        Origin origin = Origin::None;
        QString fileName; ///< as the system was asked for it: a vendor's may have no folder; empty without a library
        QString problem;  ///< why nothing will be heard; empty when nothing speaks against it
    };

    /// Sees to it that the speech front end finds a library for each language, if there is one. Call it before the front
    /// end's first message; the libraries stay loaded to the end of the program.
    ///
    /// An own library is asked whether it can speak; a vendor's is left to the front end.
    /// \param folders where the house's own libraries are looked for, in this order
    /// \returns English and Korean
    static QVector<Found> prepare(const QStringList& folders = ownFolders());

    /// The folder "speech" beside the program, as in a build, and the one of an installation.
    static QStringList ownFolders();
};
