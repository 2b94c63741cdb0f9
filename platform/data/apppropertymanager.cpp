#include "platform/data/apppropertymanager.h"

AppPropertyManager::~AppPropertyManager() = default;
