#pragma once

#include "scada/scadaexport.h"

#include <QObject>

/// The host's processor of general messages, known to the layer by this type alone.
class KORVANE_SCADA_EXPORT KorvaneGeneralMessageProcessorInterface : public QObject
{
    Q_OBJECT
};
