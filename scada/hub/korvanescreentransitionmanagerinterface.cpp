#include "scada/hub/korvanescreentransitionmanagerinterface.h"

KorvaneScreenTransitionManagerInterface::KorvaneScreenTransitionManagerInterface(QWidget* parent) : QWidget(parent)
{
}

KorvaneScreenTransitionManagerInterface::~KorvaneScreenTransitionManagerInterface() = default;
