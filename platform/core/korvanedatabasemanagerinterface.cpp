#include "platform/core/korvanedatabasemanagerinterface.h"

KorvaneDataBaseManagerInterface::~KorvaneDataBaseManagerInterface() = default;
