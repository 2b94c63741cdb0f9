#include "scada/hub/korvanescadaactionfactoryinterface.h"

KorvaneScadaActionFactoryInterface::KorvaneScadaActionFactoryInterface(QObject* parent) : QObject(parent)
{
}

KorvaneScadaActionFactoryInterface::~KorvaneScadaActionFactoryInterface() = default;
