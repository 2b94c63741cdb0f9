#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

/// A list of points merged into another one.
///
/// A line whose id and name the list has already changes that object, in the columns that the merged file has, empty ones
/// too; a line whose id and name are both new adds one. Other lines of the list stay byte for byte as they are.
namespace PointImport {

struct Result
{
    QByteArray text;     ///< the list with everything in it
    QStringList added;   ///< names
    QStringList changed; ///< "NAME: COLUMN "before" -> "after", ..."
    int unchanged = 0;
    QStringList notes; ///< columns of the merged file that mean nothing
};

/// \returns why nothing of \p file may be merged into \p list: one of them can't be read, a line of \p file is malformed,
/// has an id or name that belongs to another object, or something that no list may have.
KORVANE_HOST_EXPORT tl::expected<Result, QString> merge(const QString& list, const QString& file);

} // namespace PointImport
