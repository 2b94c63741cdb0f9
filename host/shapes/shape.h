#pragma once

#include "host/hostexport.h"
#include "platform/core/tesselinterface.h"

#include <QByteArray>
#include <QGraphicsItem>
#include <QLatin1String>
#include <QSizeF>
#include <QString>

#include <memory>
#include <vector>

class Shape;
class ShapeInput;
class ShapePainter;
struct ShapeProperty;

/// What one class of shapes is called, and what its shapes have.
struct ShapeClass
{
    QLatin1String name;                    ///< as page files hold it
    std::vector<ShapeProperty> properties; ///< of this class, those common to all shapes first
    std::unique_ptr<Shape> (*create)();

    /// \returns null for a property that shapes of this class don't have.
    KORVANE_HOST_EXPORT const ShapeProperty* find(const QString& propertyName) const;
};

/// Is told of what happens to a shape. A page is one.
class KORVANE_HOST_EXPORT ShapeListener
{
public:
    virtual ~ShapeListener();
    /// \p shape looks different now, or lies elsewhere. Told once until the shape was drawn.
    virtual void shapeChanged(Shape& shape) = 0;
    /// The operator did something with \p shape that its class has a name for. The shape must outlive the call: a page
    /// that is to be closed because of it is closed later.
    /// \param handler name of the script function that stands for it, as "onTextChanged"
    /// \param arguments what the function is given behind the shape itself
    virtual void shapeActed(Shape& shape, const QString& handler, const QVariantList& arguments) = 0;
};

/// A drawn object on a page, and the graphics item that overlays lie upon and clicks find.
///
/// It is drawn by draw(), in its own coordinates, whose origin is its position on the page: "Geometry" is QRectF(0, 0,
/// width, height) unless a shape says otherwise. Setting a property to another value reports the shape as changed.
class KORVANE_HOST_EXPORT Shape : public TesselInterface, public QGraphicsItem
{
public:
    /// \param size what a shape of this class measures until it is resized, from 1 to 100,000 units
    explicit Shape(const QSizeF& size = {100, 40});
    ~Shape() override;

    /// The class's table; lives as long as the program.
    virtual const ShapeClass& shapeClass() const = 0;
    /// Draws the shape inside boundingRect(), antialiasing switched on; must not leave the painter's state changed other
    /// than pen, brush and font.
    virtual void draw(const ShapePainter& painter) const = 0;

    /// What an operator works with; null for a shape that only shows something.
    virtual ShapeInput* input();
    /// The same as far as it can be worked with now: null as well while the shape or its layer is hidden, or it is
    /// switched off.
    ShapeInput* usableInput();

    /// The shape's name on its page; may be empty.
    QString name() const { return m_name; }
    void setName(const QString& name) { m_name = name; }

    /// The layer that the shape lies on; not owned.
    void setLayer(StratelInterface* layer) { m_layer = layer; }
    void setListener(ShapeListener* listener) { m_listener = listener; }

    QGraphicsItem* graphicsItem() final { return this; }
    StratelInterface* layer() final { return m_layer; }
    QVariant namedProperty(const QString& name) const final;
    bool setNamedProperty(const QString& name, const QVariant& value) final;

    QRectF geometry() const { return m_geometry; }
    /// Moves and resizes the shape: position and size on the page, before its rotation.
    void setPlace(const QRectF& place);
    QRectF place() const { return {pos(), m_geometry.size()}; }

    /// The geometry and what is drawn around it.
    QRectF boundingRect() const override;
    /// Draws without cached glyphs, for whoever shows the shape in a view of graphics items.
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) final;

    /// Reports that the shape looks different now.
    void changed();
    /// Reports that the operator did something with the shape (ShapeListener::shapeActed).
    void act(const QString& handler, const QVariantList& arguments = {});
    /// Whether it changed since it was last drawn.
    bool isChanged() const { return m_isChanged; }
    /// States that it was drawn as it is now.
    void setDrawn() { m_isChanged = false; }

    /// What the quality overlays over the shape show, as one number; 0 without one. Overlays do not report changes.
    quint64 overlayState() const;

    /// Whether live data drive the shape, so that whoever draws it must expect it to change.
    bool isLive() const { return m_isLive; }
    void setLive(bool live) { m_isLive = live; }

    /// Place in the stacking order of the page, from the bottom; the page sets it.
    int order() const { return m_order; }
    void setOrder(int order) { m_order = order; }

    /// The stored members that this program does not know, as the text of a JSON object; empty without one. Kept for
    /// saving.
    const QByteArray& unknownMembers() const { return m_unknownMembers; }
    void setUnknownMembers(const QByteArray& members) { m_unknownMembers = members; }
    /// Likewise the stored properties that it does not know, or whose values it can't use.
    const QByteArray& unknownProperties() const { return m_unknownProperties; }
    void setUnknownProperties(const QByteArray& members) { m_unknownProperties = members; }

    static constexpr double margin = 4; ///< room for lines of up to 8 units and the marks' strokes

    /// The properties that every shape has: Geometry, Position, Size, Rotation, Opacity, Visible, ToolTip.
    static std::vector<ShapeProperty> commonProperties();
    /// The common properties and, behind them, \p own.
    static std::vector<ShapeProperty> withCommon(const std::vector<ShapeProperty>& own);

protected:
    /// How far beyond its geometry the shape draws: 0 for one that stays inside, which makes it cheap to draw anew
    /// beside others.
    virtual double overhang() const { return margin; }
    /// In a shape that is lower than this, text reaches beyond it.
    static constexpr double lowestForText = 10;

    /// A child overlay came, went or the item was moved.
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private:
    QRectF m_geometry;
    QString m_name;
    QByteArray m_unknownMembers;
    QByteArray m_unknownProperties;
    StratelInterface* m_layer = nullptr;
    ShapeListener* m_listener = nullptr;
    int m_order = 0;
    bool m_isChanged = false;
    bool m_isLive = false;
};
