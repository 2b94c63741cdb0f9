#include "platform/data/dataserviceinterface.h"

DataServiceInterface::~DataServiceInterface() = default;
