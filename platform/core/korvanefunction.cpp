#include "platform/core/korvanefunction.h"

#include <QGraphicsItem>
#include <QVariant>

namespace {
constexpr int shapeKey = 0x4B56; // out of the way of keys that a host counts from 0
}

TesselInterface* KorvaneFunction::GraphicsItemToTessel(const QGraphicsItem* item)
{
    return item ? static_cast<TesselInterface*>(item->data(shapeKey).value<void*>()) : nullptr;
}

void KorvaneFunction::setTessel(QGraphicsItem* item, TesselInterface* shape)
{
    item->setData(shapeKey, shape ? QVariant::fromValue(static_cast<void*>(shape)) : QVariant());
}
