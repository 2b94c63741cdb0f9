#include "scada/hub/korvaneprojectmanagerinterface.h"

KorvaneProjectManagerInterface::KorvaneProjectManagerInterface(QWidget* parent) : QWidget(parent)
{
}

KorvaneProjectManagerInterface::~KorvaneProjectManagerInterface() = default;
