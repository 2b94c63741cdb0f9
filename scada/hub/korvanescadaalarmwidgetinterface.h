#pragma once

#include "scada/scadaexport.h"

#include <QWidget>

/// The host's alarm list, known to the layer by this type alone.
class KORVANE_SCADA_EXPORT KorvaneScadaAlarmWidgetInterface : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneScadaAlarmWidgetInterface)

public:
    explicit KorvaneScadaAlarmWidgetInterface(QWidget* parent);
    ~KorvaneScadaAlarmWidgetInterface() override;
};
