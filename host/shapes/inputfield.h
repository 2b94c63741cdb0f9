#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/shape.h"

#include <QColor>
#include <QString>

#include <optional>

/// The look of a field to write into. What is being written is "Text", and shows before all; else it is the value, and
/// else, in grey, the placeholder. "Active" draws a strong frame and a caret behind the text.
class KORVANE_HOST_EXPORT InputField : public Shape
{
public:
    InputField() : Shape({130, 32}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

    /// The text as it is shown, without the placeholder.
    QString shownText() const;

protected:
    double overhang() const override { return geometry().height() < lowestForText ? 2 : 0; }

private:
    QString m_text;
    std::optional<double> m_value;
    int m_decimals = -1; ///< -1: as many as needed, at most 6 digits in all
    QString m_placeholder = QStringLiteral("--");
    QString m_unit;
    int m_fontSize = 14;
    bool m_isActive = false;
    QColor m_textColor = Palette::ink;
    QColor m_fillColor = Palette::paper;
    QColor m_lineColor = Palette::outline;
};
