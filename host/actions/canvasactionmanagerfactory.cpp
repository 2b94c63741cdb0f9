#include "host/actions/canvasactionmanagerfactory.h"

CanvasActionManagerFactory::CanvasActionManagerFactory(KorvaneScadaCoreInterface* hub, QObject* parent)
    : CanvasScadaActionManagerFactoryInterface(parent), m_hub(hub)
{
}

CanvasScadaActionManagerInterface* CanvasActionManagerFactory::createActionManager(KVCanvasInterface* canvas,
                                                                                   QObject* parent)
{
    auto* manager = new CanvasActionManager(canvas, m_hub, parent);
    manager->setPresentRecords(m_presentRecords);
    return manager;
}
