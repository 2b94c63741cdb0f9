#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/shape.h"

#include <QColor>
#include <QString>

/// A text that does not change with data, of one line or several ("\n" between them), on a plate if wished.
///
/// "Alignment" takes the numbers of Qt::AlignmentFlag, for both directions; each line that is too long is elided.
class KORVANE_HOST_EXPORT Label : public Shape
{
public:
    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

protected:
    double overhang() const override { return 2; } // letters may lean out of the box

private:
    QString m_text = QStringLiteral("Text");
    int m_fontSize = 14;
    bool m_isBold = false;
    int m_alignment = Qt::AlignLeft | Qt::AlignVCenter;
    QColor m_textColor = Palette::ink;
    QColor m_fillColor; ///< none
    QColor m_lineColor; ///< none
};
