#pragma once

#include "platform/platformexport.h"

#include <QtGlobal>

/// A layer of a canvas: shapes that are shown and hidden together. Implemented by the host.
class KORVANE_PLATFORM_EXPORT StratelInterface
{
public:
    StratelInterface() = default;
    Q_DISABLE_COPY(StratelInterface)
    virtual ~StratelInterface();

    /// Whether the layer's shapes are shown.
    virtual bool isVisible() const = 0;

    /// Whether quality marks are shown over the layer's shapes.
    virtual bool areMarksShown() const = 0;
};
