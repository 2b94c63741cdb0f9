#include "platform/core/stratelinterface.h"

StratelInterface::~StratelInterface() = default;
