#pragma once

#include "scada/scadaexport.h"

#include <QGraphicsItem>
#include <QRectF>

/// A translucent blue box that marks a shape; its opacity shows a two-state value.
///
/// Made as a child of the shape's graphics item, in whose coordinates it lies. Its setters schedule no repaint and
/// announce no change of geometry: whoever calls them updates the scene. It takes no input.
class KORVANE_SCADA_EXPORT PointMarkerGraphicsItem : public QGraphicsItem
{
public:
    explicit PointMarkerGraphicsItem(QGraphicsItem* parent);
    ~PointMarkerGraphicsItem() override;

    /// The marked area.
    void setRect(const QRectF& rect) { m_rect = rect; }

    /// The two-state value: true is painted at an opacity of 0.3, false at 0.5.
    void updateValue(bool value) { m_value = value; }

    /// The marked area grown by 5 on every side, whether it is painted or not.
    QRectF boundingRect() const override { return m_rect.adjusted(-5, -5, 5, 5); }
    /// Paints only while the parent is visible.
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    QRectF m_rect;
    bool m_value = false;
};
