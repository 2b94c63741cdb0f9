#include "host/shapes/shape.h"

#include "host/shapes/shapeinput.h"
#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"
#include "platform/core/korvanefunction.h"
#include "platform/core/stratelinterface.h"
#include "scada/binding/tlqgraphicsitem.h"

#include <QSizeF>

#include <algorithm>

namespace {

constexpr double smallestSize = 1;     // a shape of no size could neither be seen nor picked
constexpr double largestSize = 100000; // beyond any page, and within what painting can count in
constexpr double farthest = 1000000;   // from the page's corner

QVariant readGeometry(const Shape& shape)
{
    return shape.geometry();
}

QVariant readPosition(const Shape& shape)
{
    return shape.pos();
}

bool writePosition(Shape& shape, const QVariant& value)
{
    QPointF position;
    if (!ShapeProperties::convert(value, position))
        return false;
    shape.setPlace({position, shape.geometry().size()});
    return true;
}

QVariant readSize(const Shape& shape)
{
    return shape.geometry().size();
}

bool writeSize(Shape& shape, const QVariant& value)
{
    QSizeF size;
    if (!ShapeProperties::convert(value, size))
        return false;
    shape.setPlace({shape.pos(), size});
    return true;
}

bool writeGeometry(Shape& shape, const QVariant& value)
{
    QRectF geometry;
    return ShapeProperties::convert(value, geometry) && writeSize(shape, geometry.size());
}

QVariant readRotation(const Shape& shape)
{
    return shape.rotation();
}

bool writeRotation(Shape& shape, const QVariant& value)
{
    double degrees = 0;
    if (!ShapeProperties::convert(value, degrees))
        return false;
    if (degrees == shape.rotation())
        return true;
    shape.setTransformOriginPoint(shape.geometry().center());
    shape.setRotation(degrees);
    shape.changed();
    return true;
}

QVariant readOpacity(const Shape& shape)
{
    return shape.opacity();
}

bool writeOpacity(Shape& shape, const QVariant& value)
{
    double opacity = 0;
    if (!ShapeProperties::convert(value, opacity))
        return false;
    opacity = std::clamp(opacity, 0.0, 1.0);
    if (opacity == shape.opacity())
        return true;
    shape.setOpacity(opacity);
    shape.changed();
    return true;
}

QVariant readVisible(const Shape& shape)
{
    return shape.isVisible();
}

bool writeVisible(Shape& shape, const QVariant& value)
{
    bool isVisible = false;
    if (!ShapeProperties::convert(value, isVisible))
        return false;
    if (isVisible == shape.isVisible())
        return true;
    shape.setVisible(isVisible);
    shape.changed();
    return true;
}

QVariant readToolTip(const Shape& shape)
{
    return shape.toolTip();
}

bool writeToolTip(Shape& shape, const QVariant& value)
{
    QString text;
    if (!ShapeProperties::convert(value, text))
        return false;
    if (text != shape.toolTip())
        shape.setToolTip(text);
    return true;
}

} // namespace

const ShapeProperty* ShapeClass::find(const QString& propertyName) const
{
    for (const ShapeProperty& property : properties) {
        if (property.name == propertyName)
            return &property;
    }
    return nullptr;
}

ShapeListener::~ShapeListener() = default;

Shape::Shape(const QSizeF& size) : m_geometry(QPointF(), size)
{
    KorvaneFunction::setTessel(this, this);
}

Shape::~Shape() = default;

ShapeInput* Shape::input()
{
    return nullptr;
}

ShapeInput* Shape::usableInput()
{
    ShapeInput* const all = isVisible() && (!m_layer || m_layer->isVisible()) ? input() : nullptr;
    return all && all->isEnabled() ? all : nullptr;
}

QVariant Shape::namedProperty(const QString& name) const
{
    const ShapeProperty* property = shapeClass().find(name);
    return property ? property->read(*this) : QVariant();
}

bool Shape::setNamedProperty(const QString& name, const QVariant& value)
{
    const ShapeProperty* property = shapeClass().find(name);
    return property && property->write(*this, value);
}

void Shape::setPlace(const QRectF& place)
{
    const QSizeF size(std::clamp(place.width(), smallestSize, largestSize),
                      std::clamp(place.height(), smallestSize, largestSize));
    const QPointF position(std::clamp(place.x(), -farthest, farthest), std::clamp(place.y(), -farthest, farthest));
    if (pos() == position && m_geometry.size() == size)
        return;
    prepareGeometryChange();
    m_geometry = {QPointF(), size};
    setPos(position);
    if (rotation() != 0) // an origin costs memory that most shapes need not spend
        setTransformOriginPoint(m_geometry.center());
    for (QGraphicsItem* child : childItems()) {
        if (auto* overlay = dynamic_cast<TlqGraphicsItem*>(child))
            overlay->setRect(m_geometry);
    }
    changed();
}

quint64 Shape::overlayState() const
{
    constexpr quint64 spread = 1099511628211; // FNV's: keeps the states of any number of overlays apart
    quint64 state = 0;
    for (QGraphicsItem* child : childItems()) {
        if (const auto* overlay = dynamic_cast<const TlqGraphicsItem*>(child))
            state = state * spread + quint64(overlay->isVisible() ? overlay->shownState() + 1 : 0x20);
    }
    return state;
}

QRectF Shape::boundingRect() const
{
    constexpr double markStrokes = 5; // the lowest of a mark's strokes below the centre line
    constexpr double strokeEnd = 1.5; // by which a stroke's square end reaches beyond it
    const double around = overhang();
    QRectF bounds = m_geometry.adjusted(-around, -around, around, around);
    if (!childItems().isEmpty()) {
        bounds |= m_geometry.adjusted(-strokeEnd, 0, strokeEnd, 0);
        bounds.setBottom(std::max(bounds.bottom(), m_geometry.center().y() + markStrokes));
    }
    return bounds;
}

void Shape::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    draw(ShapePainter(*painter));
}

void Shape::changed()
{
    if (m_isChanged)
        return;
    m_isChanged = true;
    if (m_listener)
        m_listener->shapeChanged(*this);
}

void Shape::act(const QString& handler, const QVariantList& arguments)
{
    if (m_listener)
        m_listener->shapeActed(*this, handler, arguments);
}

QVariant Shape::itemChange(GraphicsItemChange change, const QVariant& value)
{
    if (change == ItemChildAddedChange || change == ItemChildRemovedChange)
        changed();
    return QGraphicsItem::itemChange(change, value);
}

std::vector<ShapeProperty> Shape::commonProperties()
{
    using Kind = ShapeProperty::Kind;
    return {
        {QLatin1String("Geometry"), Kind::Rect, readGeometry, writeGeometry, false},
        {QLatin1String("Position"), Kind::Point, readPosition, writePosition, false},
        {QLatin1String("Size"), Kind::Size, readSize, writeSize, false},
        {QLatin1String("Rotation"), Kind::Number, readRotation, writeRotation},
        {QLatin1String("Opacity"), Kind::Number, readOpacity, writeOpacity},
        {QLatin1String("Visible"), Kind::Boolean, readVisible, writeVisible},
        {QLatin1String("ToolTip"), Kind::Text, readToolTip, writeToolTip},
    };
}

std::vector<ShapeProperty> Shape::withCommon(const std::vector<ShapeProperty>& own)
{
    std::vector<ShapeProperty> all = commonProperties();
    all.insert(all.end(), own.begin(), own.end());
    return all;
}
