#include "host/control/controlconfirmer.h"

ControlConfirmer::~ControlConfirmer() = default;
