#include "platform/core/kvcanvasinterface.h"

KVCanvasInterface::~KVCanvasInterface() = default;
