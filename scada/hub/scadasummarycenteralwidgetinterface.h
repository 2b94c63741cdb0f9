#pragma once

#include "scada/scadaexport.h"

#include <QWidget>

/// What a summary window shows in its middle, known to the layer by this type alone. Spelled so: connections and casts
/// by text match it.
class KORVANE_SCADA_EXPORT ScadaSummaryCenteralWidgetInterface : public QWidget
{
    Q_OBJECT
};
