#pragma once

#include "platform/platformexport.h"

#include <QString>
#include <QStringList>

class TesselInterface;

/// A canvas: one graphic page of shapes. Implemented by the host.
class KORVANE_PLATFORM_EXPORT KVCanvasInterface
{
public:
    KVCanvasInterface() = default;
    Q_DISABLE_COPY(KVCanvasInterface)
    virtual ~KVCanvasInterface();

    /// The name by which the project knows the page.
    virtual QString canvasName() const = 0;

    /// The shape of that name (case-sensitive), owned by the canvas; null when there is none.
    virtual TesselInterface* shapeNamed(const QString& name) const = 0;
    /// Names of all shapes that have one, in stacking order from the bottom.
    virtual QStringList shapeNames() const = 0;
};
