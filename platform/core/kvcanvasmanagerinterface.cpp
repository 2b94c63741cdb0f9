#include "platform/core/kvcanvasmanagerinterface.h"

KVCanvasManagerInterface::~KVCanvasManagerInterface() = default;
