#pragma once

#include "host/actions/canvasactionmanager.h"
#include "host/hostexport.h"
#include "scada/hub/canvasscadaactionmanagerfactoryinterface.h"

/// Makes the reference host's action managers.
class KORVANE_HOST_EXPORT CanvasActionManagerFactory : public CanvasScadaActionManagerFactoryInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(CanvasActionManagerFactory)

public:
    /// \param hub not owned, must outlive the managers
    explicit CanvasActionManagerFactory(KorvaneScadaCoreInterface* hub, QObject* parent = nullptr);

    /// Where the managers made from now on get present records from.
    void setPresentRecords(const CanvasActionManager::PresentRecords& records) { m_presentRecords = records; }

    CanvasScadaActionManagerInterface* createActionManager(KVCanvasInterface* canvas, QObject* parent) override;

private:
    KorvaneScadaCoreInterface* m_hub;
    CanvasActionManager::PresentRecords m_presentRecords;
};
