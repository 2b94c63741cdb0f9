#include "scada/hub/korvanescadacoreinterface.h"

// The speech front end is kept without a value: whether it can speak, the host states itself.
KorvaneScadaCoreInterface::KorvaneScadaCoreInterface(QObject* parent) // NOLINT(*-member-init)
    : QObject(parent)
{
}

KorvaneScadaCoreInterface::~KorvaneScadaCoreInterface() = default;
