#pragma once

#include "host/actions/tagaction.h"

/// Shows a value as a number, times a factor plus an offset.
class KORVANE_HOST_EXPORT NumberAction : public TagAction
{
    Q_DECLARE_TR_FUNCTIONS(NumberAction)

public:
    explicit NumberAction(TesselInterface* shape) : TagAction(shape) {}

    int type() const override { return Number; }
    QString name() const override;
    const std::vector<ActionSetting>& settingTable() const override;
    QStringList drivenProperties() const override;
    ScadaTagActionInterface* clone(TesselInterface* shape) const override;
    void applyToShape(bool force) override;

private:
    QString m_property = QStringLiteral("Value");
    double m_factor = 1;
    double m_offset = 0;
};
