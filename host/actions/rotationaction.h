#pragma once

#include "host/actions/tagaction.h"

/// Turns a shape by where a value lies in a range; values beyond it turn no further.
class KORVANE_HOST_EXPORT RotationAction : public TagAction
{
    Q_DECLARE_TR_FUNCTIONS(RotationAction)

public:
    explicit RotationAction(TesselInterface* shape) : TagAction(shape) {}

    int type() const override { return Rotation; }
    QString name() const override;
    const std::vector<ActionSetting>& settingTable() const override;
    QStringList drivenProperties() const override;
    ScadaTagActionInterface* clone(TesselInterface* shape) const override;
    void applyToShape(bool force) override;

private:
    double m_low = 0;
    double m_high = 100;
    double m_lowAngle = 0;   ///< degrees clockwise, at the low value
    double m_highAngle = 90; ///< at the high value
};
