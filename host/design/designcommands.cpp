#include "host/design/designcommands_p.h"

#include "host/scripting/scriptengine.h"
#include "host/shapes/shapefactory.h"
#include "host/shapes/shapeproperty.h"

#include <utility>

namespace {

std::unique_ptr<Shape> copyOf(const Shape& shape)
{
    std::unique_ptr<Shape> copy = shape.shapeClass().create();
    copy->setName(shape.name());
    copy->setPlace(shape.place());
    for (const ShapeProperty& property : shape.shapeClass().properties) {
        if (property.isStored)
            property.write(*copy, property.read(shape));
    }
    return copy;
}

} // namespace

// What scripts that were tried hold of the copied page may be about to go.
void DesignCommand::forgetTrial() const
{
    m_document.m_scripts.forgetCanvas(m_document.m_trial.canvas.get());
}

BindCommand::BindCommand(DesignDocument& document, const QString& text, Shape& shape, TagAction* before,
                         std::unique_ptr<TagAction> after, const QVariantMap& properties)
    : DesignCommand(document, text),
      m_shape(shape),
      m_inPage(before),
      m_held(std::move(after)),
      m_properties(properties)
{
    const QList<ScadaTagActionInterface*> actions = page().actions->actionsOf(&shape);
    m_place = before ? actions.indexOf(before) : actions.size();
}

void BindCommand::swap()
{
    CanvasScadaActionManagerInterface& actions = *page().actions;
    TagAction* const before = m_inPage;
    if (before)
        actions.takeAction(before);
    m_inPage = m_held.release();
    if (m_inPage) {
        actions.addAction(m_inPage);
        actions.moveAction(&m_shape, actions.actionsOf(&m_shape).size() - 1, m_place);
    }
    m_held.reset(before);
    for (auto property = m_properties.begin(); property != m_properties.end(); ++property) {
        const QVariant held = m_shape.namedProperty(property.key());
        m_shape.setNamedProperty(property.key(), property.value());
        property.value() = held;
    }
    Q_EMIT document().bindingsChanged(&m_shape);
}

AddShapeCommand::AddShapeCommand(DesignDocument& document, const QString& text, std::unique_ptr<Shape> shape,
                                 std::unique_ptr<TagAction> action, std::size_t layer)
    : DesignCommand(document, text),
      m_shape(*shape),
      m_layer(layer),
      m_isLayerMade(layer >= page().canvas->layers().size()),
      m_held(std::move(shape)),
      m_action(action.get()),
      m_heldAction(std::move(action))
{
}

// The shape may have got scripts and an operation since it was made; another one may come to lie at its address.
AddShapeCommand::~AddShapeCommand()
{
    if (!m_held)
        return;
    page().events.remove(&m_shape);
    page().operations.set(&m_shape, std::nullopt);
}

void AddShapeCommand::swap()
{
    if (m_held)
        putIn();
    else
        takeOut();
}

void AddShapeCommand::putIn()
{
    for (Canvas* canvas : {page().canvas.get(), trial().canvas.get()}) {
        if (m_isLayerMade)
            canvas->addLayer(DesignDocument::tr("Values"));
    }
    Canvas& copied = *trial().canvas;
    copied.addShape(*copied.layers().at(m_layer), copyOf(m_shape));
    page().canvas->addShape(*page().canvas->layers().at(m_layer), std::move(m_held));
    page().actions->addAction(m_heldAction.release());
    Q_EMIT document().shapeAdded(&m_shape);
}

void AddShapeCommand::takeOut()
{
    Q_EMIT document().shapeAboutToGo(&m_shape);
    page().actions->takeAction(m_action);
    m_heldAction.reset(m_action);
    m_held = page().canvas->takeShape(m_shape);
    forgetTrial();
    Canvas& copied = *trial().canvas;
    copied.takeShape(*copied.layers().at(m_layer)->shapes().back()); // all that was added above went before
    for (Canvas* canvas : {page().canvas.get(), &copied}) {
        if (m_isLayerMade)
            canvas->removeTopLayer();
    }
    Q_EMIT document().shapeGone();
}

OperationCommand::OperationCommand(DesignDocument& document, const QString& text, const Shape& shape,
                                   const std::optional<Operation>& operation)
    : DesignCommand(document, text), m_shape(shape), m_operation(operation)
{
}

void OperationCommand::swap()
{
    Operations& operations = page().operations;
    const Operation* held = operations.of(&m_shape);
    std::optional<Operation> before = held ? std::optional(*held) : std::nullopt;
    const QByteArray unreadable = operations.unreadable(&m_shape);
    operations.set(&m_shape, m_operation);
    if (!m_unreadable.isEmpty())
        operations.setUnreadable(&m_shape, m_unreadable);
    m_operation = std::move(before);
    m_unreadable = unreadable;
    Q_EMIT document().operationChanged(&m_shape);
}

AccessCommand::AccessCommand(DesignDocument& document, const QString& text, const PageAccess& access)
    : DesignCommand(document, text), m_access(access)
{
}

void AccessCommand::swap()
{
    std::swap(page().access, m_access);
    Q_EMIT document().accessChanged();
}
