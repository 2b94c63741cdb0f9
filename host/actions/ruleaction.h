#pragma once

#include "host/actions/tagaction.h"

#include <QVariantMap>

/// Base of actions that set properties of a shape by rules: the first rule whose conditions hold decides. Where none
/// holds, and while the source has failed, the shape looks as it was drawn.
class KORVANE_HOST_EXPORT RuleAction : public TagAction
{
public:
    explicit RuleAction(TesselInterface* shape) : TagAction(shape) {}

    QStringList drivenProperties() const override;
    QString matchedCondition() const override;
    void runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface* core) override;
    void applyToShape(bool force) override;

protected:
    /// The first rule that holds; null for none, and while the source has failed.
    const ActionRule* matchedRule() const;
    /// Sets the shape's properties to \p set, and those that other rules set to what they were drawn with.
    void show(const QVariantMap& set);

private:
    QVariantMap m_drawn;      ///< the driven properties as the page was opened
    bool m_isShowing = false; ///< what a rule sets, not what was drawn
};
