#pragma once

#include "host/core/scadacore.h"
#include "host/hostexport.h"
#include "platform/core/korvanecoreinterface.h"

/// The reference host's core object. Owns the service hub and closes it at its end.
class KORVANE_HOST_EXPORT KorvaneCore : public KorvaneCoreInterface
{
public:
    explicit KorvaneCore(ScadaCore::Clock clock = &QDateTime::currentDateTimeUtc);
    ~KorvaneCore() override;

    KorvaneScadaCoreInterface* scadaCoreInterface() override { return &m_scada; }

private:
    ScadaCore m_scada;
};
