#include "host/actions/visibilityaction.h"

namespace {

const QString& visible()
{
    static const QString name = QStringLiteral("Visible");
    return name;
}

} // namespace

QString VisibilityAction::name() const
{
    return tr("Visibility");
}

const std::vector<ActionSetting>& VisibilityAction::settingTable() const
{
    static const std::vector<ActionSetting> table = {
        ActionSettings::of<&VisibilityAction::m_isShownWhenTrue>("ShownWhenTrue"),
    };
    return table;
}

QStringList VisibilityAction::drivenProperties() const
{
    return {visible()};
}

ScadaTagActionInterface* VisibilityAction::clone(TesselInterface* shape) const
{
    return copyFor(shape, *this);
}

void VisibilityAction::applyToShape(bool)
{
    if (isSourceFailed())
        show({}); // as it was drawn
    else
        show({{visible(), (matchedRule() != nullptr) == m_isShownWhenTrue}});
}
