#pragma once

#include "host/shapes/operableshape.h"

#include <QDate>
#include <QString>

/// A field that shows a day, and opens a calendar. "Date" is its text as ISO 8601 writes it ("2024-02-29"), empty for
/// none; the placeholder then shows in grey.
///
/// Tells on: onDateChanged(year, month, day) when the operator picked another day.
class KORVANE_HOST_EXPORT DateField : public OperableShape
{
public:
    DateField() : OperableShape({150, 32}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

    /// Invalid for none.
    QDate date() const { return m_date; }

    /// The operator picked a day; the one that is shown changes nothing.
    void pick(QDate date);

private:
    static QVariant readDate(const Shape& shape);
    static bool writeDate(Shape& shape, const QVariant& value);

    QDate m_date;
    QString m_placeholder;
};
