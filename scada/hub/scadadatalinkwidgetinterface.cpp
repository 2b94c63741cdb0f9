#include "scada/hub/scadadatalinkwidgetinterface.h"

ScadaDataLinkWidgetInterface::ScadaDataLinkWidgetInterface(QWidget* parent) : QWidget(parent)
{
}

ScadaDataLinkWidgetInterface::~ScadaDataLinkWidgetInterface() = default;

void ScadaDataLinkWidgetInterface::setShapeObject(TesselInterface*)
{
}
