#pragma once

#include <QStringList>

/// The names that a script uses, each once, sorted by character; those in strings and comments don't count.
struct DocumentNames
{
    /// \param except position in the name that does not count, as it is being typed
    static DocumentNames of(const QString& source, int except);

    QStringList bare;
    QStringList members; ///< names that stand behind a dot
};
