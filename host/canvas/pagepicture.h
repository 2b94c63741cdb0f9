#pragma once

#include "host/hostexport.h"

#include <QString>
#include <QTransform>

#include <tl/expected.hpp>

class Canvas;
class QPainter;
class Shape;
class TextPainter;

/// Pictures of pages in files.
namespace PagePicture {

/// Draws one shape with its overlays, if it and its layer are visible.
/// \param view from the page to the painter's device
/// \param texts as ShapePainter takes it
KORVANE_HOST_EXPORT void drawShape(QPainter& painter, Shape& shape, const QTransform& view, TextPainter* texts);

/// Writes the page as it looks now, \p zoom times its own size: as vectors where the file's suffix is pdf or svg (a unit of the
/// page is 1/96 inch), else as an image in the format of its suffix.
/// \returns why it could not.
KORVANE_HOST_EXPORT tl::expected<void, QString> write(Canvas& canvas, const QString& fileName, double zoom);

} // namespace PagePicture
