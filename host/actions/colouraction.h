#pragma once

#include "host/actions/ruleaction.h"

/// Colours a shape by rules. A rule that sets "Blink" has its colours change places with the drawn ones at each of the
/// page's half periods.
class KORVANE_HOST_EXPORT ColourAction : public RuleAction
{
    Q_DECLARE_TR_FUNCTIONS(ColourAction)

public:
    explicit ColourAction(TesselInterface* shape) : RuleAction(shape) {}

    int type() const override { return Colour; }
    QString name() const override;
    QStringList drivenProperties() const override;
    ScadaTagActionInterface* clone(TesselInterface* shape) const override;
    void applyToShape(bool force) override;
    void timeOut() override;

private:
    bool m_isBlinking = false;
    bool m_isDark = false; ///< the half period in which the drawn colours show
};
