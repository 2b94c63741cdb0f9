#include "scada/hub/systemalarmmanagerinterface.h"

SystemAlarmManagerInterface::SystemAlarmManagerInterface(QObject* parent) : QObject(parent)
{
}

SystemAlarmManagerInterface::~SystemAlarmManagerInterface() = default;
