#pragma once

#include "host/core/scadacore.h"
#include "host/hostexport.h"
#include "platform/core/korvanecoreinterface.h"

/// The reference host's core object. Owns the service hub.
///
/// Close the hub before any registered service goes. The core's own end closes it too, for whoever forgot, but that may
/// be late.
class KORVANE_HOST_EXPORT KorvaneCore : public KorvaneCoreInterface
{
public:
    explicit KorvaneCore(ScadaCore::Clock clock = &QDateTime::currentDateTimeUtc);
    ~KorvaneCore() override;

    KorvaneScadaCoreInterface* scadaCoreInterface() override { return &m_scada; }
    KVCanvasManagerInterface* canvasManager() override { return m_canvasManager; }
    /// \param manager not owned; null takes it back
    void setCanvasManager(KVCanvasManagerInterface* manager) { m_canvasManager = manager; }
    KorvaneScriptInterface* scriptInterface() override { return m_scripts; }
    /// \param scripts not owned; null takes it back
    void setScriptInterface(KorvaneScriptInterface* scripts) { m_scripts = scripts; }
    KorvaneDataBaseManagerInterface* databaseManager() override { return m_databaseManager; }
    /// \param manager not owned; null takes it back
    void setDatabaseManager(KorvaneDataBaseManagerInterface* manager) { m_databaseManager = manager; }
    KorvaneProjectManagerInterface* projectManager() override { return m_projectManager; }
    /// \param manager not owned; null takes it back
    void setProjectManager(KorvaneProjectManagerInterface* manager) { m_projectManager = manager; }

private:
    ScadaCore m_scada;
    KVCanvasManagerInterface* m_canvasManager = nullptr;
    KorvaneScriptInterface* m_scripts = nullptr;
    KorvaneDataBaseManagerInterface* m_databaseManager = nullptr;
    KorvaneProjectManagerInterface* m_projectManager = nullptr;
};
