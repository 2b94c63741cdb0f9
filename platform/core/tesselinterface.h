#pragma once

#include "platform/platformexport.h"

#include <QString>
#include <QVariant>

class QGraphicsItem;
class StratelInterface;

/// A drawn object (shape) on a canvas. Implemented by the host.
///
/// What can be bound to data are its named properties. Every shape has "Geometry": a QRectF in the coordinates of its
/// own graphics item.
class KORVANE_PLATFORM_EXPORT TesselInterface
{
public:
    TesselInterface() = default;
    Q_DISABLE_COPY(TesselInterface)
    virtual ~TesselInterface();

    /// The item that draws the shape and owns the overlays over it; null for a shape that is not drawn.
    virtual QGraphicsItem* graphicsItem() = 0;

    /// The layer that the shape lies on; null for a shape on none.
    virtual StratelInterface* layer() = 0;

    /// \returns an invalid variant for a property that the shape does not have.
    virtual QVariant namedProperty(const QString& name) const = 0;

    /// \returns false, with nothing changed, when the shape has no such property or cannot take \p value.
    virtual bool setNamedProperty(const QString& name, const QVariant& value) = 0;
};
