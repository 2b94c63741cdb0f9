#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/shape.h"

#include <QColor>
#include <QString>

#include <optional>

/// A number on a plate: format, decimals and unit. Text where there is no number: what was set as "Text".
class KORVANE_HOST_EXPORT ReadOut : public Shape
{
public:
    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

    /// The text as it is shown: the number with its decimals between prefix and unit.
    QString shownText() const;

protected:
    double overhang() const override { return geometry().height() < lowestForText ? 2 : 0; }

private:
    std::optional<double> m_value; ///< without one the text is shown
    int m_decimals = 1;            ///< -1: as many as needed, at most 6 digits in all
    QString m_text = QStringLiteral("--");
    QString m_prefix;
    QString m_unit;
    int m_fontSize = 16;
    bool m_isBold = false;
    int m_alignment = Qt::AlignRight;
    QColor m_textColor = Palette::ink;
    QColor m_fillColor = Palette::paper;
    QColor m_lineColor = Palette::hairline;
};
