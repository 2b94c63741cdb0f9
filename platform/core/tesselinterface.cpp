#include "platform/core/tesselinterface.h"

TesselInterface::~TesselInterface() = default;
