#include "host/canvas/canvas.h"

#include <algorithm>
#include <utility>

Canvas::Canvas(const QString& name, QObject* parent) : QObject(parent), m_name(name)
{
}

Canvas::~Canvas()
{
    for (const auto& layer : m_layers) {
        for (const auto& shape : layer->shapes())
            shape->setListener(nullptr);
    }
}

QStringList Canvas::shapeNames() const
{
    QStringList names;
    for (const auto& layer : m_layers) {
        for (const auto& shape : layer->shapes()) {
            if (!shape->name().isEmpty())
                names.append(shape->name());
        }
    }
    return names;
}

void Canvas::setSize(const QSizeF& size)
{
    if (size == m_size)
        return;
    m_size = size;
    Q_EMIT rearranged();
}

void Canvas::setBackground(const QColor& color)
{
    if (color == m_background)
        return;
    m_background = color;
    Q_EMIT rearranged();
}

Layer& Canvas::addLayer(const QString& name)
{
    m_layers.push_back(std::make_unique<Layer>(name));
    return *m_layers.back();
}

void Canvas::removeTopLayer()
{
    Q_ASSERT(!m_layers.empty() && m_layers.back()->shapes().empty());
    m_layers.pop_back();
}

void Canvas::setLayerVisible(Layer& layer, bool visible)
{
    if (layer.m_isVisible == visible)
        return;
    layer.m_isVisible = visible;
    Q_EMIT rearranged();
}

void Canvas::setMarksShown(Layer& layer, bool shown)
{
    if (layer.m_areMarksShown == shown)
        return;
    layer.m_areMarksShown = shown;
    Q_EMIT rearranged();
}

Shape& Canvas::addShape(Layer& layer, std::unique_ptr<Shape> shape)
{
    Shape& added = *shape;
    added.setLayer(&layer);
    added.setDrawn(); // it counts from here on: all of the page is drawn anew
    added.setListener(this);
    layer.m_shapes.push_back(std::move(shape));
    Q_EMIT rearranged();
    return added;
}

std::unique_ptr<Shape> Canvas::takeShape(Shape& shape)
{
    std::unique_ptr<Shape> taken;
    for (const auto& layer : m_layers) {
        auto& shapes = layer->m_shapes;
        const auto found =
            std::find_if(shapes.begin(), shapes.end(), [&shape](const auto& each) { return each.get() == &shape; });
        if (found == shapes.end())
            continue;
        taken = std::move(*found);
        shapes.erase(found);
        break;
    }
    Q_ASSERT(taken);
    shape.setListener(nullptr);
    shape.setLayer(nullptr);
    m_changed.erase(std::remove(m_changed.begin(), m_changed.end(), &shape), m_changed.end());
    Q_EMIT rearranged();
    return taken;
}

void Canvas::reserve(Layer& layer, std::size_t count)
{
    layer.m_shapes.reserve(layer.m_shapes.size() + count);
}

std::vector<Shape*> Canvas::shapes() const
{
    std::vector<Shape*> all;
    all.reserve(shapeCount());
    for (const auto& layer : m_layers) {
        for (const auto& shape : layer->shapes())
            all.push_back(shape.get());
    }
    return all;
}

std::size_t Canvas::shapeCount() const
{
    std::size_t count = 0;
    for (const auto& layer : m_layers)
        count += layer->shapes().size();
    return count;
}

Shape* Canvas::findShape(const QString& name) const
{
    for (const auto& layer : m_layers) {
        for (const auto& shape : layer->shapes()) {
            if (shape->name() == name)
                return shape.get();
        }
    }
    return nullptr;
}

Shape* Canvas::shapeAt(const QPointF& position) const
{
    for (auto layer = m_layers.rbegin(); layer != m_layers.rend(); ++layer) {
        if (!(*layer)->isVisible())
            continue;
        const auto& shapes = (*layer)->shapes();
        for (auto shape = shapes.rbegin(); shape != shapes.rend(); ++shape) {
            if ((*shape)->isVisible() && (*shape)->contains((*shape)->mapFromScene(position)))
                return shape->get();
        }
    }
    return nullptr;
}

std::vector<Shape*> Canvas::takeChanged()
{
    for (Shape* shape : m_changed)
        shape->setDrawn();
    return std::exchange(m_changed, {});
}

void Canvas::shapeChanged(Shape& shape)
{
    m_changed.push_back(&shape);
    if (m_changed.size() == 1)
        Q_EMIT changed();
}

void Canvas::shapeActed(Shape& shape, const QString& handler, const QVariantList& arguments)
{
    Q_EMIT acted(&shape, handler, arguments);
}
