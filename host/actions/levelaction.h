#pragma once

#include "host/actions/tagaction.h"

/// Fills a shape by where a value lies in a range: "Level" from 0 to 1.
class KORVANE_HOST_EXPORT LevelAction : public TagAction
{
    Q_DECLARE_TR_FUNCTIONS(LevelAction)

public:
    explicit LevelAction(TesselInterface* shape) : TagAction(shape) {}

    int type() const override { return Level; }
    QString name() const override;
    const std::vector<ActionSetting>& settingTable() const override;
    QStringList drivenProperties() const override;
    ScadaTagActionInterface* clone(TesselInterface* shape) const override;
    void applyToShape(bool force) override;

private:
    double m_low = 0;    ///< value of the level 0
    double m_high = 100; ///< value of the level 1; may be less than the other
};
