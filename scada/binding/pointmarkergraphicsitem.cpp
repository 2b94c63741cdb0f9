#include "scada/binding/pointmarkergraphicsitem.h"

#include <QPainter>

PointMarkerGraphicsItem::PointMarkerGraphicsItem(QGraphicsItem* parent) : QGraphicsItem(parent)
{
    setFlag(ItemIsMovable, false);
    setFlag(ItemIsSelectable, false);
    setFlag(ItemIsFocusable, false);
    setFlag(ItemStacksBehindParent, false);
    setFlag(ItemClipsToShape, false);
}

PointMarkerGraphicsItem::~PointMarkerGraphicsItem() = default;

void PointMarkerGraphicsItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const QGraphicsItem* parent = parentItem();
    if (!parent || !parent->isVisible())
        return;

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(Qt::NoPen);
    painter->setBrush(QBrush(QColor(23, 114, 249, 255), Qt::SolidPattern));
    painter->setOpacity(m_value ? 0.3 : 0.5);
    painter->drawRect(m_rect.adjusted(-1, -1, 1, 1));
    painter->restore();
}
