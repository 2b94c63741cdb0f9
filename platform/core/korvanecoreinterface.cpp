#include "platform/core/korvanecoreinterface.h"

KorvaneCoreInterface::~KorvaneCoreInterface() = default;
