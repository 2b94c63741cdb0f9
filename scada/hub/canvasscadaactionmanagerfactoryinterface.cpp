#include "scada/hub/canvasscadaactionmanagerfactoryinterface.h"

CanvasScadaActionManagerFactoryInterface::CanvasScadaActionManagerFactoryInterface(QObject* parent) : QObject(parent)
{
}

CanvasScadaActionManagerFactoryInterface::~CanvasScadaActionManagerFactoryInterface() = default;
