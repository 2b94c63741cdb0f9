#pragma once

#include "host/actions/tagaction.h"
#include "host/hostexport.h"
#include "scada/hub/korvanescadaactionfactoryinterface.h"

#include <memory>

/// Makes the host's tag actions by the numbers of TagAction::Type.
class KORVANE_HOST_EXPORT TagActionFactory : public KorvaneScadaActionFactoryInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(TagActionFactory)

public:
    explicit TagActionFactory(QObject* parent = nullptr);
    ~TagActionFactory() override;

    /// createAction() for whoever goes on with the host's own kind; null for an unknown type.
    static std::unique_ptr<TagAction> make(int type, TesselInterface* shape);

    QList<int> actionTypes() const override;
    QString actionName(int type) const override;
    bool canDrive(int type, const TesselInterface* shape) const override;
    QStringList drivenProperties(int type) const override;
    ScadaTagActionInterface* createAction(int type, TesselInterface* shape) const override;
    ScadaTagActionInterface* loadAction(int type, const ScadaTagActionStream& stream,
                                        TesselInterface* shape) const override;
    QWidget* createEditor(ScadaTagActionInterface* action, QWidget* parent) const override;
};
