#include "platform/data/scadaruntimeinterface.h"

ScadaRuntimeInterface::~ScadaRuntimeInterface() = default;
