#include "scada/hub/canvasscadaactionmanagerinterface.h"

CanvasScadaActionManagerInterface::CanvasScadaActionManagerInterface(QObject* parent) : QObject(parent)
{
    // The signal with it crosses queued connections.
    qRegisterMetaType<QPair<ScadaAlarm, QList<ScadaTagActionInterface*>>>();
}

CanvasScadaActionManagerInterface::~CanvasScadaActionManagerInterface() = default;
