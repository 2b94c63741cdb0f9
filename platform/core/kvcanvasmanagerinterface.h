#pragma once

#include "platform/platformexport.h"

#include <QList>
#include <QString>

class KVCanvasInterface;

/// The open canvases of the host. Implemented by the host.
class KORVANE_PLATFORM_EXPORT KVCanvasManagerInterface
{
public:
    KVCanvasManagerInterface() = default;
    Q_DISABLE_COPY(KVCanvasManagerInterface)
    virtual ~KVCanvasManagerInterface();

    /// The canvas in front, not owned; null when none is open.
    virtual KVCanvasInterface* currentCanvas() const = 0;
    /// The open canvases, not owned, in the order in which they were opened.
    virtual QList<KVCanvasInterface*> canvases() const = 0;
    /// The open canvas of that name, not owned; null when it is not open.
    virtual KVCanvasInterface* findCanvas(const QString& name) const = 0;
};
