#include "scada/hub/korvanescadaruntimmanagerinterface.h"

KorvaneScadaRuntimManagerInterface::KorvaneScadaRuntimManagerInterface(QObject* parent) : QObject(parent)
{
    // Signals with these cross queued connections.
    qRegisterMetaType<ScadaOperationMessage>();
    qRegisterMetaType<QList<uint>>();
}

KorvaneScadaRuntimManagerInterface::~KorvaneScadaRuntimManagerInterface() = default;
