#pragma once

#include "platform/core/korvanefunction.h"
#include "platform/core/stratelinterface.h"
#include "platform/core/tesselinterface.h"

#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QMap>

/// A layer for tests.
class TestLayer : public StratelInterface
{
public:
    bool isVisible() const override { return visible; }
    bool areMarksShown() const override { return marks; }

    bool visible = true;
    bool marks = true;
};

/// A shape for tests: a rectangle on a scene of its own, with any named properties.
///
/// Destroy actions before their shape: its item takes the overlays over it along.
class TestShape : public TesselInterface
{
public:
    explicit TestShape(const QRectF& geometry = QRectF(0, 0, 20, 10))
    {
        m_properties.insert(QStringLiteral("Geometry"), geometry);
        KorvaneFunction::setTessel(item, this);
        scene.addItem(item);
    }

    QGraphicsItem* graphicsItem() override { return item; }
    StratelInterface* layer() override { return onLayer; }
    QVariant namedProperty(const QString& name) const override { return m_properties.value(name); }
    bool setNamedProperty(const QString& name, const QVariant& value) override
    {
        m_properties.insert(name, value);
        return true;
    }

    QGraphicsScene scene;
    QGraphicsRectItem* item = new QGraphicsRectItem; ///< the scene's, once it is on it
    StratelInterface* onLayer = nullptr;

private:
    QMap<QString, QVariant> m_properties;
};
