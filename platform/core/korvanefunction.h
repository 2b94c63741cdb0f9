#pragma once

#include "platform/platformexport.h"

class QGraphicsItem;
class TesselInterface;

/// Small functions of the host product.
class KORVANE_PLATFORM_EXPORT KorvaneFunction
{
public:
    KorvaneFunction() = delete;

    /// The shape that \p item draws; null for null and for an item that no shape was set for.
    static TesselInterface* GraphicsItemToTessel(const QGraphicsItem* item);

    /// States that \p item draws \p shape, which must outlive the item or be taken back with null.
    static void setTessel(QGraphicsItem* item, TesselInterface* shape);
};
