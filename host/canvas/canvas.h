#pragma once

#include "host/canvas/layer.h"
#include "host/hostexport.h"
#include "host/shapes/shape.h"
#include "platform/core/kvcanvasinterface.h"

#include <QColor>
#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QString>

#include <memory>
#include <vector>

/// A page: layers of shapes on a background. Owns them, and collects which shapes have to be drawn anew.
class KORVANE_HOST_EXPORT Canvas : public QObject, public KVCanvasInterface, private ShapeListener
{
    Q_OBJECT
    Q_DISABLE_COPY(Canvas)

public:
    explicit Canvas(const QString& name, QObject* parent = nullptr);
    ~Canvas() override;

    QString canvasName() const override { return m_name; }
    TesselInterface* shapeNamed(const QString& name) const override { return findShape(name); }
    QStringList shapeNames() const override;

    /// What the page is called for operators; its name unless set.
    QString title() const { return m_title.isEmpty() ? m_name : m_title; }
    void setTitle(const QString& title) { m_title = title; }
    QSizeF size() const { return m_size; }
    void setSize(const QSizeF& size);
    QColor background() const { return m_background; }
    void setBackground(const QColor& color);

    const std::vector<std::unique_ptr<Layer>>& layers() const { return m_layers; }
    /// A new layer above those there are.
    Layer& addLayer(const QString& name);
    /// Takes the topmost layer away, which must not have shapes.
    void removeTopLayer();
    void setLayerVisible(Layer& layer, bool visible);
    void setMarksShown(Layer& layer, bool shown);

    /// Puts \p shape on top of \p layer's.
    Shape& addShape(Layer& layer, std::unique_ptr<Shape> shape);
    /// Gives \p shape, which must be one of the page's, to the caller; what drives it must have been taken before.
    std::unique_ptr<Shape> takeShape(Shape& shape);
    /// Makes room for that many more shapes.
    void reserve(Layer& layer, std::size_t count);

    /// All shapes from the bottom up, hidden ones too.
    std::vector<Shape*> shapes() const;
    std::size_t shapeCount() const;
    /// The lowest shape of that name; null when there is none.
    Shape* findShape(const QString& name) const;
    /// The topmost visible shape at \p position on the page; null when there is none.
    Shape* shapeAt(const QPointF& position) const;

    /// Hands out the shapes that changed since it was last asked, each once, and counts them as drawn.
    std::vector<Shape*> takeChanged();
    bool hasChanged() const { return !m_changed.empty(); }

    /// The stored members that this program does not know, as the text of a JSON object; empty without one. Kept for
    /// saving.
    QByteArray unknownMembers() const { return m_unknownMembers; }
    void setUnknownMembers(const QByteArray& members) { m_unknownMembers = members; }

Q_SIGNALS:
    /// A shape changed; not emitted again until takeChanged().
    void changed();
    /// The operator did something with a shape (ShapeListener::shapeActed).
    void acted(Shape* shape, const QString& handler, const QVariantList& arguments);
    /// Everything has to be drawn anew: layers, their order, the size or the background are others now.
    void rearranged();

private:
    void shapeChanged(Shape& shape) override;
    void shapeActed(Shape& shape, const QString& handler, const QVariantList& arguments) override;

    QString m_name;
    QString m_title;
    QSizeF m_size{1600, 900};
    QColor m_background{0xec, 0xef, 0xf1};
    QByteArray m_unknownMembers;
    std::vector<std::unique_ptr<Layer>> m_layers;
    std::vector<Shape*> m_changed;
};
