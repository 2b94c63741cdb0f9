#pragma once

#include "host/actions/ruleaction.h"

/// Shows a shape while any of its rules holds, or hides it then. What the rules set does not count.
class KORVANE_HOST_EXPORT VisibilityAction : public RuleAction
{
    Q_DECLARE_TR_FUNCTIONS(VisibilityAction)

public:
    explicit VisibilityAction(TesselInterface* shape) : RuleAction(shape) {}

    int type() const override { return Visibility; }
    QString name() const override;
    const std::vector<ActionSetting>& settingTable() const override;
    QStringList drivenProperties() const override;
    ScadaTagActionInterface* clone(TesselInterface* shape) const override;
    void applyToShape(bool force) override;

private:
    bool m_isShownWhenTrue = true;
};
