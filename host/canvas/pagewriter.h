#pragma once

#include "host/canvas/page.h"
#include "host/hostexport.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

/// Writes page files as PageReader reads them: what differs from the defaults, and all that the reader kept.
///
/// Only of pages that were not opened: what live data did to a shape's properties would be written with the rest.
namespace PageWriter {

/// Ends in a line feed.
KORVANE_HOST_EXPORT QByteArray write(const Page& page);

/// Replaces the file as a whole, or leaves the one before as it was.
/// \returns why it could not.
KORVANE_HOST_EXPORT tl::expected<void, QString> writeFile(const Page& page, const QString& fileName);

} // namespace PageWriter
