#include "scada/hub/korvanescadacoreinterface.h"

// The speech front end has no initial value by contract.
KorvaneScadaCoreInterface::KorvaneScadaCoreInterface(QObject* parent) // NOLINT(*-member-init)
    : QObject(parent)
{
}

KorvaneScadaCoreInterface::~KorvaneScadaCoreInterface() = default;
