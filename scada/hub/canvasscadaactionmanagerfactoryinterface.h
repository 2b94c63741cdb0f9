#pragma once

#include "scada/scadaexport.h"

#include <QObject>

class CanvasScadaActionManagerInterface;
class KVCanvasInterface;

/// Makes the action managers of pages. Implemented by the host, one a process.
class KORVANE_SCADA_EXPORT CanvasScadaActionManagerFactoryInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(CanvasScadaActionManagerFactoryInterface)

public:
    explicit CanvasScadaActionManagerFactoryInterface(QObject* parent);
    ~CanvasScadaActionManagerFactoryInterface() override;

    /// A new action manager for \p canvas, without actions, owned by \p parent or, with null, by the caller.
    virtual CanvasScadaActionManagerInterface* createActionManager(KVCanvasInterface* canvas, QObject* parent) = 0;
};
