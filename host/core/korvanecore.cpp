#include "host/core/korvanecore.h"

#include <utility>

KorvaneCore::KorvaneCore(ScadaCore::Clock clock) : m_scada(this, std::move(clock))
{
}

KorvaneCore::~KorvaneCore()
{
    m_scada.close();
}
