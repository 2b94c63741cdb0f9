#include "host/shapes/datefield.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

// A leaf of a calendar: its band at the top, and days.
void drawCalendar(const ShapePainter& canvas, const QRectF& room, const QColor& color)
{
    const double side = std::min(room.width(), room.height()) * 0.5;
    QRectF leaf(0, 0, side, side);
    leaf.moveCenter(room.center());
    canvas.drawFrame(leaf, QColor(), color);
    canvas.drawFrame({leaf.left(), leaf.top(), side, side * 0.3}, color, QColor());
    const double day = side * 0.14;
    for (const double row : {0.5, 0.74}) {
        for (const double column : {0.24, 0.5, 0.76})
            canvas.drawFrame({leaf.left() + side * column - day / 2, leaf.top() + side * row - day / 2, day, day},
                             color, QColor());
    }
}

} // namespace

const ShapeClass& DateField::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("DateField"),
        withOperable({
            {QLatin1String("Date"), ShapeProperty::Kind::Text, readDate, writeDate},
            of<&DateField::m_placeholder>("Placeholder"),
        }),
        [] { return std::unique_ptr<Shape>(new DateField); },
    };
    return self;
}

QVariant DateField::readDate(const Shape& shape)
{
    return static_cast<const DateField&>(shape).m_date.toString(Qt::ISODate);
}

// Of a date with a time the date counts.
bool DateField::writeDate(Shape& shape, const QVariant& value)
{
    QString text;
    if (!ShapeProperties::convert(value, text))
        return false;
    const QDate date = QDate::fromString(text, Qt::ISODate);
    if (!text.isEmpty() && !date.isValid())
        return false;
    auto& self = static_cast<DateField&>(shape);
    if (date == self.m_date)
        return true;
    self.m_date = date;
    self.changed();
    return true;
}

void DateField::draw(const ShapePainter& canvas) const
{
    drawCalendar(canvas, drawField(canvas, m_date.toString(Qt::ISODate), m_placeholder), drawnText());
}

void DateField::pick(QDate date)
{
    if (date == m_date || !date.isValid())
        return;
    m_date = date;
    changed();
    act(QStringLiteral("onDateChanged"), {date.year(), date.month(), date.day()});
}
