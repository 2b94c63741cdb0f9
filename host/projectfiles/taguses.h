#pragma once

#include "host/hostexport.h"
#include "platform/data/objectkey.h"

#include <QString>
#include <QStringList>

#include <vector>

class RuntimeDatabase;
struct Project;

/// A place of a project where an object is named.
struct KORVANE_HOST_EXPORT TagUse
{
    QString file; ///< relative to the project's folder
    int line = 0;
    QString page = {};  ///< empty for the list of points
    QString shape = {}; ///< empty for one without a name and for the page itself; of the list of points the object
    /// "binding", "condition", "bound", "operation", "other", "script" (a string that is the tag), "text" (a script's string
    /// that has the name in it), "object" (its own line), "feedback", "interlock", "parent".
    QString what;
    QString tag; ///< as it is written there

    struct Result
    {
        std::vector<TagUse> uses; ///< by file and place
        QStringList problems;     ///< files that can't be read
    };
    /// All places where \p object is named, by its name or its id and whatever the field.
    static Result of(const Project& project, const RuntimeDatabase& database, ObjectKey object);

    /// The page-file word for a kind of place: "binding" and so on.
    static QString wordOf(int kind);
    /// Whether \p name stands in \p text as a whole name, not as a part of a longer one.
    static bool isNamedIn(const QString& text, const QString& name);
};
