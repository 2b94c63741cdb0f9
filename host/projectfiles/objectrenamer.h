#pragma once

#include "host/hostexport.h"
#include "host/projectfiles/objectrename.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <vector>

class FileChanges;
class RuntimeDatabase;
struct Project;

/// Gives an object of a project another name, wherever the project's files name it: the list of points, the pages' bindings,
/// conditions, operations and scripts, and the map of the recording that it plays.
///
/// Scripts are changed in strings that are the tag, with a field or without; other texts that have the name in them are told
/// as notes. A column of a recording goes on feeding the object: the old name becomes its address.
namespace ObjectRenamer {

struct Change
{
    QString file; ///< relative to the project's folder
    int line = 0;
    QString object; ///< shape of the page, or object of the list; may be empty
    QString what;   ///< as TagUse::what, and "address" and "map"
    QString before;
    QString after;
};

struct Result
{
    std::vector<Change> changes;
    /// What was left as it is though somebody might have to look at it, with file and line.
    QStringList notes;
};

/// What \p oldTag (with the prefix of units and lines) and \p newName (with or without it) ask for.
/// \returns why it can't be: there is no such object, the name is taken, or no tag could reach it.
KORVANE_HOST_EXPORT tl::expected<ObjectRename, QString> ask(const RuntimeDatabase& database, const QString& oldTag,
                                                            const QString& newName);

/// \param changes takes the files that become others; null for what would be done only
/// \returns why it can't be done, and then nothing may be committed: a file can't be read or written, or has no way to
/// write the new name.
KORVANE_HOST_EXPORT tl::expected<Result, QString> run(const Project& project, const ObjectRename& rename,
                                                      FileChanges* changes);

} // namespace ObjectRenamer
