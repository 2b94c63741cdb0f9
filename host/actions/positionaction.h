#pragma once

#include "host/actions/tagaction.h"

#include <QPointF>

/// Moves a shape by where a value lies in a range: from its own place, by a distance at the high value.
class KORVANE_HOST_EXPORT PositionAction : public TagAction
{
    Q_DECLARE_TR_FUNCTIONS(PositionAction)

public:
    explicit PositionAction(TesselInterface* shape) : TagAction(shape) {}

    int type() const override { return Position; }
    QString name() const override;
    const std::vector<ActionSetting>& settingTable() const override;
    QStringList drivenProperties() const override;
    ScadaTagActionInterface* clone(TesselInterface* shape) const override;
    void applyToShape(bool force) override;
    void runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface* core) override;

private:
    double m_low = 0;
    double m_high = 100;
    double m_distanceX = 0; ///< in the page's units, at the high value
    double m_distanceY = 0;
    QPointF m_home; ///< where the shape lay when the page was opened
};
