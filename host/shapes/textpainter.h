#pragma once

#include "host/hostexport.h"
#include "host/shapes/shapepainter.h"

#include <QHash>
#include <QImage>
#include <QTransform>

#include <array>
#include <memory>
#include <vector>

/// Draws short texts of ASCII characters, numbers above all, from images of their glyphs: several times faster than
/// laying a text out each time.
///
/// Glyphs are kept for the sizes and colours in use at one zoom; another zoom begins anew. Each glyph lands on a whole
/// pixel of the device, as hinted text does.
class KORVANE_HOST_EXPORT TextPainter
{
public:
    TextPainter();
    ~TextPainter();

    /// Draws as ShapePainter::drawText says.
    /// \returns false, with nothing drawn, for what it can't do as well as plain drawing: rotated or unevenly scaled
    /// painters, other characters, texts that don't fit.
    bool draw(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, TextStyle style, const QColor& color,
              const QString& text);

    /// Glyph images kept now.
    int glyphCount() const;

private:
    struct GlyphSet;
    GlyphSet* glyphs(TextStyle style, const QColor& color, double scale);

    QHash<quint64, std::shared_ptr<GlyphSet>> m_sets;
    GlyphSet* m_last = nullptr;
    quint64 m_lastKey = 0;
    double m_scale = 0;
};
