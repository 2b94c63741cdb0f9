#include "scada/hub/korvanescadaalarmwidgetinterface.h"

KorvaneScadaAlarmWidgetInterface::KorvaneScadaAlarmWidgetInterface(QWidget* parent) : QWidget(parent)
{
}

KorvaneScadaAlarmWidgetInterface::~KorvaneScadaAlarmWidgetInterface() = default;
