#include "host/core/scadacore.h"

#include <utility>

ScadaCore::ScadaCore(KorvaneCoreInterface* core, Clock clock, QObject* parent)
    : KorvaneScadaCoreInterface(parent), m_clock(std::move(clock))
{
    m_core = core;
    setTTSInterface(nullptr);
}

bool ScadaCore::open()
{
    if (m_state == State::Closed || !missingServices().isEmpty())
        return false;
    m_state = State::Open;
    return true;
}

QStringList ScadaCore::missingServices() const
{
    // The base's getters are not const, as embedders know them; they only read.
    auto& hub = const_cast<ScadaCore&>(*this);
    const std::pair<const void*, QString> needed[] = {
        {hub.scadaRuntime(), QStringLiteral("runtime database")},
        {hub.controller(), QStringLiteral("data service")},
        {hub.propertyManager(), QStringLiteral("property manager")},
        {hub.canvasActionManagerFactory(), QStringLiteral("canvas action manager factory")},
    };
    QStringList missing;
    for (const auto& [service, name] : needed) {
        if (!service)
            missing.append(name);
    }
    return missing;
}

void ScadaCore::close()
{
    if (m_state == State::Closed)
        return;
    m_state = State::Closed;
    Q_EMIT systemAboutTobeClose();
}
