#pragma once

#include "host/hostexport.h"

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QString>

class TextPainter;

/// A text's size and weight; the family is the page's.
struct TextStyle
{
    int pixelSize = 14; ///< in the page's own units
    bool isBold = false;

    friend bool operator==(TextStyle a, TextStyle b) { return a.pixelSize == b.pixelSize && a.isBold == b.isBold; }
};

/// What a shape draws itself with: a painter in the shape's own coordinates, texts that are fast where they can be, and
/// lines that are sharp at every zoom.
///
/// Sharp means: the line fills whole device pixels. Painters that rotate or stretch have no pixels to align to; for
/// them everything stays where it was given.
class KORVANE_HOST_EXPORT ShapePainter
{
public:
    /// \param texts draws texts from cached glyphs; null draws them plainly
    explicit ShapePainter(QPainter& painter, TextPainter* texts = nullptr) : m_painter(painter), m_texts(texts) {}

    QPainter& painter() const { return m_painter; }

    /// One line of text inside \p rect, aligned, not wrapped. A text wider than the rectangle is elided, so that no
    /// part of a number is ever silently cut: an elided number shows "…". A text whose line is higher than the
    /// rectangle by more than 2 units at each side is drawn smaller.
    void drawText(const QRectF& rect, Qt::Alignment alignment, TextStyle style, const QColor& color,
                  const QString& text) const;

    /// A rectangle with its line inside \p rect, which is thinned where it would not fit. An invalid colour leaves the
    /// fill or the line out.
    void drawFrame(const QRectF& rect, const QColor& fill, const QColor& line, double lineWidth = 1,
                   double radius = 0) const;
    /// A horizontal or vertical line, its middle between \p from and \p to.
    void drawRule(const QPointF& from, const QPointF& to, const QColor& color, double width = 1) const;

    /// The width as a whole number of device pixels, at least one; 0 stays 0.
    double crispWidth(double width) const;
    /// The point moved by at most half a device pixel, so that horizontal and vertical lines of crispWidth(\p width)
    /// through it are sharp.
    QPointF crisp(const QPointF& point, double width) const;

    /// The font of \p style, shared by all.
    static const QFont& font(TextStyle style);
    /// Width of \p text in the page's own units.
    static double textWidth(TextStyle style, const QString& text);

private:
    QPainter& m_painter;
    TextPainter* m_texts;
};
