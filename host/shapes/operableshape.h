#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/shape.h"
#include "host/shapes/shapeinput.h"
#include "host/shapes/shapepainter.h"

#include <QColor>

#include <vector>

/// What shapes that take the keyboard focus have in common: a frame with texts in it, and "Enabled". Switched off, they
/// are greyed and the operator can't do anything with them.
class KORVANE_HOST_EXPORT OperableShape : public Shape, public ShapeInput
{
public:
    ShapeInput* input() final { return this; }
    bool isEnabled() const final { return m_isEnabled; }

    int fontSize() const { return m_fontSize; }
    QColor textColor() const { return m_textColor; }
    QColor fillColor() const { return m_fillColor; }

protected:
    explicit OperableShape(const QSizeF& size) : Shape(size) {}

    /// The properties of all shapes, \p own, and behind them FontSize, Enabled and the colours.
    static std::vector<ShapeProperty> withOperable(const std::vector<ShapeProperty>& own);

    double overhang() const override { return geometry().height() < lowestForText ? 2 : 0; }
    /// Fill and frame, the frame strong and blue for a shape that is being written into.
    void drawGround(const ShapePainter& painter, bool isActive = false) const;
    /// A field's ground, its text at the left and room for a sign at the right, which opens something.
    /// \param placeholder shown in grey instead of an empty text
    /// \returns the room for the sign
    QRectF drawField(const ShapePainter& painter, const QString& text, const QString& placeholder = {}) const;

    TextStyle textStyle() const { return {m_fontSize}; }
    /// The colours as they are drawn now.
    QColor drawnFill() const;
    QColor drawnText() const { return m_isEnabled ? m_textColor : Palette::paler(m_textColor); }
    QColor drawnLine() const { return m_isEnabled ? m_lineColor : Palette::paler(m_lineColor); }
    /// Of texts that stand in for others.
    QColor drawnGrey() const;

    static constexpr double inset = 6; ///< between frame and text

private:
    int m_fontSize = 14;
    bool m_isEnabled = true;
    QColor m_textColor = Palette::ink;
    QColor m_fillColor = Palette::paper;
    QColor m_lineColor = Palette::outline;
};
