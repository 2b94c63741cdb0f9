#pragma once

#include "host/actions/tagaction.h"

/// Shows a multi-state symbol's state: the value itself, or what two feedback contacts say.
///
/// With two values the first is "is open" (or running), the second "is closed" (or stopped): 1 when only the first is on,
/// 0 when only the second is, 2 on the way (neither), 3 for a contradiction (both). Without a value the state is unknown,
/// -1.
class KORVANE_HOST_EXPORT StateAction : public TagAction
{
    Q_DECLARE_TR_FUNCTIONS(StateAction)

public:
    explicit StateAction(TesselInterface* shape) : TagAction(shape) {}

    int type() const override { return State; }
    QString name() const override;
    const std::vector<ActionSetting>& settingTable() const override;
    QStringList drivenProperties() const override;
    ScadaTagActionInterface* clone(TesselInterface* shape) const override;
    void applyToShape(bool force) override;

    /// The state that the values say now.
    int state() const;

private:
    QString m_property = QStringLiteral("State");
    int m_offset = 0; ///< added to a single value
};
