#pragma once

#include <QString>

/// Something wrong with a project.
struct Finding
{
    enum class Severity {
        Warning, ///< works, but hardly as it was meant
        Error,   ///< does not work
    };

    Severity severity = Severity::Error;
    QString code;   ///< which kind of thing is wrong, for programs: "unknown-tag"; never changes its meaning
    QString file;   ///< relative to the project's folder
    int line = 0;   ///< 0 where it is not known
    QString object; ///< shape, layer or object of the list; may be empty
    QString text;
};
